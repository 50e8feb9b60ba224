// Broken invariants stop the program, in release builds too.

#pragma once

/// Reports a failed assertion on standard error in the C library's manner and
/// aborts the process. Unlike assert() it does not depend on NDEBUG. The buffer
/// of standard output is written first.
///
///   condition  the text of the condition that is false
///   source     the name of the source file to report
///   function   the signature of the function to report
[[noreturn]] void assertion_failed(const char* condition, const char* source,
                                   const char* function);
