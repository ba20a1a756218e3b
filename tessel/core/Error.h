// Run-time errors. Everything that fails inside the library is a tessel::Error on its way
// to a procedure's trap (mdl_Err.h), which rewrites it and raises it to the caller.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace tessel {

// Run-time error numbers of the automation runtime that the library raises or classifies.
namespace rt {
inline constexpr int32_t InvalidCall = 5;
inline constexpr int32_t Overflow = 6;
inline constexpr int32_t OutOfMemory = 7;
inline constexpr int32_t SubscriptOutOfRange = 9;
inline constexpr int32_t ArrayLocked = 10;
inline constexpr int32_t DivisionByZero = 11;
inline constexpr int32_t TypeMismatch = 13;
inline constexpr int32_t InternalError = 51;
inline constexpr int32_t FileNotFound = 53;
inline constexpr int32_t PathFileAccess = 75;
inline constexpr int32_t PathNotFound = 76;
inline constexpr int32_t ObjectNotSet = 91;
inline constexpr int32_t InvalidUseOfNull = 94;
inline constexpr int32_t NoSuchMember = 438;
inline constexpr int32_t NamedArgumentNotFound = 448;
inline constexpr int32_t ArgumentNotOptional = 449;
inline constexpr int32_t WrongArgumentCount = 450;
inline constexpr int32_t InvalidPicture = 481;
}  // namespace rt

class Error : public std::exception {
 public:
  Error(int32_t number, std::string description, std::string source = {})
      : number_(number), description_(std::move(description)), source_(std::move(source)) {}

  int32_t number() const noexcept { return number_; }
  // "module.procedure" of the procedure that raised it; empty while still inside one.
  const std::string& source() const noexcept { return source_; }
  const std::string& description() const noexcept { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  int32_t number_;
  std::string description_;
  std::string source_;
};

// Thrown once the program has been told to end at once and the terminate hook returned
// (only a test or an embedding host lets it return). No trap stops it.
struct Terminated {};

// The runtime's own text for an error number (German, as automation's runtime reports them).
std::string runtimeErrorText(int32_t number);

[[noreturn]] void raise(int32_t number);
[[noreturn]] void raise(int32_t number, std::string description);

}  // namespace tessel
