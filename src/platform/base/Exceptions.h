#pragma once

#include <exception>

namespace varnith {

// The failures that the platform raises. They carry no text: the program tells them apart by class, and
// its handler of unhandled exceptions decides by class what becomes of them. Those without a comment are
// raised by nothing on Linux. The handler knows them, so code that comes to raise one finds its place.
class RuntimeException : public std::exception {};

class FunctionNotFoundException : public RuntimeException {};
class IllegalCastException : public RuntimeException {};
class InvalidParentException : public RuntimeException {};
class KeyChainException : public RuntimeException {};
// A Dictionary was asked for the value of a key that it lacks.
class KeyNotFoundException : public RuntimeException {};
// Something was asked of a nil Ref.
class NilObjectException : public RuntimeException {};
class NoOpenTransportException : public RuntimeException {};
class OLEException : public RuntimeException {};
// An index, a row or a column lies outside of what it counts.
class OutOfBoundsException : public RuntimeException {};
// Memory ran out; the guards make it of std::bad_alloc.
class OutOfMemoryException : public RuntimeException {};
class RegExException : public RuntimeException {};
class RegExSearchPatternException : public RegExException {};
class RegistryAccessErrorException : public RuntimeException {};

}  // namespace varnith
