#pragma once

/// @file
/// Exceptions of the application framework.

/// Base of the framework's exceptions, which are thrown as pointers and released by whoever catches them.
///
///   try { list->GetAt(99); } catch (CException* e) { e->Delete(); }
class CException {
 public:
  virtual ~CException() = default;
  /// Ends a caught exception; the pointer must not be used afterwards.
  virtual void Delete() { delete this; }
};

/// An argument is out of range.
class CInvalidArgException : public CException {};

/// Throws a CInvalidArgException.
[[noreturn]] inline void AfxThrowInvalidArgException() { throw new CInvalidArgException; }
