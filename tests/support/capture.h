// What code under test writes, as text.

#pragma once

#include <cstdio>
#include <functional>
#include <string>

/// The bytes that a writer puts on the stream it is given.
std::string written(const std::function<void(std::FILE*)>& writer);

/// The bytes that an action writes to standard output.
std::string printed(const std::function<void()>& action);

/// How many of them have arrived, for an action that asks while it runs.
long bytes_printed();

/// The whole content of a file; a file that cannot be read fails the test and
/// gives the empty text.
std::string content_of(const std::string& path);

/// What a program under test wrote to the file of its standard error, without
/// the lines in which newer versions of fontconfig complain: of a toolkit that
/// does not initialise it, and of a working directory that is gone.
std::string errors_in(const std::string& path);
