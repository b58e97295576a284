"""Reads slots.txt: for each class, the operations in slot order."""

import pathlib

FOLDER = pathlib.Path(__file__).resolve().parent


def read_slots():
    slots, operations = {}, None
    for line in (FOLDER / "slots.txt").read_text(encoding="utf-8").splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        number, _, signature = line.strip().partition(" ")
        if not number.isdigit():
            operations = slots.setdefault(number, [])
        elif int(number) != len(operations):
            raise SystemExit(f"slots.txt: slot {number} is out of order")
        else:
            operations.append(signature)
    return slots
