// What code under test writes, as text.

#pragma once

#include <cstdio>
#include <functional>
#include <string>

/// The bytes that a writer puts on its stream.
std::string written(const std::function<void(std::FILE*)>& writer);

/// The bytes that an action writes to standard output.
std::string printed(const std::function<void()>& action);

/// The number of bytes so far, for an action of printed() while it runs.
long bytes_printed();

/// The whole content of a file; a file that cannot be read fails the test and
/// gives the empty text.
std::string content_of(const std::string& path);

/// What a program under test wrote to the file of its standard error, without
/// the messages of newer versions of fontconfig about a toolkit that does not
/// initialise it and a working directory that does not exist.
std::string errors_in(const std::string& path);
