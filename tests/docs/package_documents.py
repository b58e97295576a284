"""What the documents tell a developer to do with the package, done as they tell it."""

import os
import pathlib
import shutil
import subprocess

HERE = pathlib.Path(__file__).resolve().parent
COMMANDS = HERE / "commands"


class DocumentedSteps:
    """Tests for a class that has unpacked the package into `root` and runs programs in `environment`. What they make
    goes beside `root`, into `folder`, where the package's folders are links."""

    @property
    def folder(self):
        folder = self.work / "steps"
        if not folder.exists():
            folder.mkdir()
            for name in self.root.iterdir():
                (folder / name.name).symlink_to(name)
        return folder

    def run_batch(self, name):
        """What a Windows command file prints, line by line; its output is narravo's UTF-8."""
        finished = subprocess.run(["wine", "cmd", "/q", "/c", "Z:" + str(COMMANDS / name).replace("/", "\\")],
                                  cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=240, check=False)
        self.assertEqual(finished.returncode, 0, finished.stderr.decode(errors="replace"))
        return finished.stdout.decode().splitlines()

    def run_build(self, name):
        subprocess.run(["bash", "-eu", str(COMMANDS / name)], cwd=self.folder, check=True, stdout=subprocess.DEVNULL,
                       env=dict(os.environ, CMAKE_TOOLCHAIN_FILE=self.toolchain, CMAKE_GENERATOR="Ninja"))

    def test_the_c_sample_is_one_command(self):
        compilers = self.work / "compilers"
        compilers.mkdir()
        (compilers / "gcc").symlink_to(shutil.which("i686-w64-mingw32-gcc"))
        subprocess.run(["bash", "-eu", str(COMMANDS / "compile_c.sh")], cwd=self.folder, check=True,
                       env=dict(os.environ, PATH=f"{compilers}:{os.environ['PATH']}"))
        self.assertEqual(self.run_program(self.folder / "bin" / "hello.exe", "One, two."), ["One", "two"])

    def test_first_sound(self):
        self.assertGreater(len(self.run_batch("first_sound.bat")), 100)
        self.assertGreater((self.folder / "hello.mp3").stat().st_size, 10_000)

    def test_the_cpp_sample_is_built_and_speaks(self):
        self.run_build("build_sample.sh")
        self.assertEqual(self.run_batch("run_sample.bat"), ["Hello", "world"])

    def test_a_program_of_the_microsoft_abi_uses_the_c_interface(self):
        place = self.work / "microsoft abi"
        shutil.copytree(self.root / "bin", place)
        subprocess.run(["clang", "--target=i686-pc-windows-msvc", "-ffreestanding", "-Wall", "-Werror",
                        f"-I{self.root / 'include'}", "-c", HERE / "microsoft_abi.c", "-o", place / "program.obj"],
                       check=True)
        subprocess.run(["i686-w64-mingw32-dlltool", "-d", self.root / "lib" / "speech.def", "-D", "speech.dll",
                        "-l", place / "speech.lib"], check=True)
        subprocess.run(["i686-w64-mingw32-gcc", "-nostdlib", "-Wl,-e,_start", "-o", place / "program.exe",
                        place / "program.obj", place / "speech.lib"], check=True)
        finished = subprocess.run(["wine", str(place / "program.exe")], env=self.environment, stdin=subprocess.DEVNULL,
                                  timeout=120, check=False)
        self.assertEqual(finished.returncode, 42)

    def test_user_dictionaries_are_checked(self):
        self.assertEqual(self.run_batch("dict_check.bat"), ["good entries: 5"])
        self.assertGreater((self.folder / "hello.wav").stat().st_size, 50_000)
        finished = subprocess.run(
            ["wine", str(self.root / "bin" / "narravo.exe"), "dict", "check", "bad_words.csv"], cwd=HERE,
            env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            timeout=120, check=False)
        self.assertEqual(finished.returncode, 4)
        self.assertEqual(finished.stdout.decode().splitlines(), (HERE / "bad_words.txt").read_text().splitlines())

    def test_an_engine_library_takes_the_place_of_the_bundled_one(self):
        self.run_build("build_engine.sh")
        with_own_engine = self.work / "own engine"
        shutil.copytree(self.root / "bin", with_own_engine, ignore=shutil.ignore_patterns("espeak-ng-data"))
        shutil.copy(self.folder / "build" / "engine_library" / "liblxapi.dll", with_own_engine)
        narravo = with_own_engine / "narravo.exe"
        self.environment, packaged = dict(self.environment, WINEPATH="Z:" + str(with_own_engine)), self.environment
        try:
            self.assertEqual([line.split()[0] for line in self.run_program(narravo, "voices")[-1:]], ["Beeper-Plain"])
            self.assertEqual(self.run_program(self.built_sample("console_c"), "One, two."), ["One", "two"])
            self.run_program(narravo, "save", "Z:" + str(self.work / "memory.wav"), "One, two.")
            self.run_program(narravo, "export", "Z:" + str(self.work / "file.wav"), "One, two.", "--rate", "16000")
        finally:
            self.environment = packaged
        self.assert_is_speech(self.work / "memory.wav")
        self.assert_is_speech(self.work / "file.wav")
