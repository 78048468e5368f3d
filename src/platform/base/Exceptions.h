#pragma once

#include <exception>

namespace varnith {

// The exceptions that the platform raises. They carry no text: the handler of unhandled exceptions decides by
// class what to do. Nothing on Linux raises those without a comment. The handler knows them all the same, so
// code that starts to raise one needs no change there.
class RuntimeException : public std::exception {};

class FunctionNotFoundException : public RuntimeException {};
class IllegalCastException : public RuntimeException {};
class InvalidParentException : public RuntimeException {};
class KeyChainException : public RuntimeException {};
// A Dictionary has no such key.
class KeyNotFoundException : public RuntimeException {};
// A nil Ref was used, or a RecordSet has no such column.
class NilObjectException : public RuntimeException {};
class NoOpenTransportException : public RuntimeException {};
class OLEException : public RuntimeException {};
// An index, a row or a column is out of range.
class OutOfBoundsException : public RuntimeException {};
// Memory has run out. HandleUnhandled turns std::bad_alloc into this.
class OutOfMemoryException : public RuntimeException {};
class RegExException : public RuntimeException {};
// A search pattern is no valid regular expression.
class RegExSearchPatternException : public RegExException {};
class RegistryAccessErrorException : public RuntimeException {};

}  // namespace varnith
