#pragma once

// As much of the framework's classes as the public headers use, by name and as base classes only.

class CStringW {
 public:
  CStringW();
  CStringW(const CStringW&);
  CStringW& operator=(const CStringW&);
  ~CStringW();

 private:
  wchar_t* text_;
};

class CStringArray;
class CPtrList {};

template <class Base, class Pointer>
class CTypedPtrList : public Base {};
