#pragma once

// Stands in for the application framework's headers: declarations of what this project uses, with the checks
// that the real ones begin with. Nothing here is ever linked.

#if defined(_DLL) && !defined(_AFXDLL)
#error With the run-time in a DLL the framework must be in one too: define _AFXDLL
#endif
#ifdef _WINDOWS_
#error The framework includes windows.h itself: include its headers first
#endif

// Not from within windows.h, which packs its records.
#include <emmintrin.h>

#include <windows.h>

#include <stdarg.h>

class CObject {
 public:
  virtual ~CObject();
};

class CStringW {
 public:
  CStringW();
  CStringW(const CStringW& text);
  CStringW(const wchar_t* text);
  CStringW(const char* text);
  CStringW(const wchar_t* text, int length);
  CStringW& operator=(const CStringW& text);
  CStringW& operator=(const wchar_t* text);
  ~CStringW();

  operator const wchar_t*() const throw();
  const wchar_t* GetString() const throw();
  int GetLength() const throw();
  bool IsEmpty() const throw();
  void Empty() throw();
  wchar_t GetAt(int index) const;
  wchar_t operator[](int index) const;
  void SetAt(int index, wchar_t value);
  int Compare(const wchar_t* other) const throw();
  int CompareNoCase(const wchar_t* other) const throw();
  int Find(const wchar_t* wanted, int start = 0) const throw();
  int Find(wchar_t wanted, int start = 0) const throw();
  int ReverseFind(wchar_t wanted) const throw();
  CStringW Left(int count) const;
  CStringW Right(int count) const;
  CStringW Mid(int first) const;
  CStringW Mid(int first, int count) const;
  int Replace(const wchar_t* wanted, const wchar_t* replacement);
  int Replace(wchar_t wanted, wchar_t replacement);
  CStringW& MakeLower();
  void Format(const wchar_t* format, ...);
  void Format(UINT format, ...);
  void FormatV(const wchar_t* format, va_list arguments);
  CStringW& operator+=(const CStringW& more);
  CStringW& operator+=(const wchar_t* more);
  CStringW& operator+=(wchar_t more);

  friend CStringW operator+(const CStringW& left, const CStringW& right);
  friend CStringW operator+(const CStringW& left, const wchar_t* right);
  friend CStringW operator+(const wchar_t* left, const CStringW& right);
  friend bool operator==(const CStringW& left, const CStringW& right) throw();
  friend bool operator==(const CStringW& left, const wchar_t* right) throw();
  friend bool operator!=(const CStringW& left, const CStringW& right) throw();
  friend bool operator!=(const CStringW& left, const wchar_t* right) throw();
  friend bool operator<(const CStringW& left, const CStringW& right) throw();

 private:
  wchar_t* text_;
};

class CStringArray : public CObject {
 public:
  INT_PTR GetSize() const;
  INT_PTR GetCount() const;
  BOOL IsEmpty() const;
  const CStringW& GetAt(INT_PTR index) const;
  const CStringW& operator[](INT_PTR index) const;
  INT_PTR Add(const wchar_t* item);
  void RemoveAll();
};

struct __POSITION;
typedef __POSITION* POSITION;

class CPtrList : public CObject {
 public:
  explicit CPtrList(INT_PTR blockSize = 10);
  INT_PTR GetCount() const;
  INT_PTR GetSize() const;
  BOOL IsEmpty() const;
  POSITION GetHeadPosition() const;
  POSITION GetTailPosition() const;
  void*& GetHead();
  const void* GetHead() const;
  void*& GetNext(POSITION& position);
  const void* GetNext(POSITION& position) const;
  void*& GetAt(POSITION position);
  const void* GetAt(POSITION position) const;
  POSITION FindIndex(INT_PTR index) const;
  POSITION AddTail(void* value);
  void* RemoveHead();
  void RemoveAll();

 private:
  CPtrList(const CPtrList&);
  void operator=(const CPtrList&);
};

template <class Base, class Pointer>
class CTypedPtrList : public Base {
 public:
  explicit CTypedPtrList(INT_PTR blockSize = 10) : Base(blockSize) {}
  Pointer& GetHead() { return (Pointer&)Base::GetHead(); }
  Pointer& GetNext(POSITION& position) { return (Pointer&)Base::GetNext(position); }
  Pointer& GetAt(POSITION position) { return (Pointer&)Base::GetAt(position); }
  Pointer RemoveHead() { return (Pointer)Base::RemoveHead(); }
  POSITION AddTail(Pointer value) { return Base::AddTail(value); }
};

class CException : public CObject {
 public:
  void Delete();
};

class CInvalidArgException : public CException {};

__declspec(noreturn) void AfxThrowInvalidArgException();

class CWinApp : public CObject {
 public:
  virtual BOOL InitInstance();
  virtual int ExitInstance();
  HINSTANCE m_hInstance;
};

CWinApp* AfxGetApp();
int AfxMessageBox(const wchar_t* text, UINT type = MB_OK, UINT help = 0);
int AfxMessageBox(UINT stringResource, UINT type = MB_OK, UINT help = (UINT)-1);
