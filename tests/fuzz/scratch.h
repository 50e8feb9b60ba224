// What the fuzz targets share: a folder for files, and settings that are read
// from the input.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Creates a folder, in memory if possible, and enters it. It contains an
/// output directory for pages. Standard output is discarded from then on.
/// Further calls do nothing. The folder is removed when the program ends.
void enter_scratch_folder();

/// Writes a file into the folder.
void write_source(const char* name, std::string_view text);

/// Sets html_style and the verbosity according to the first two bytes of an
/// input. Returns the rest.
std::string_view take_settings(std::string_view input);

/// The bytes that a fuzzer hands over.
inline std::string_view bytes_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Aborts the process, and prints the claim, if the condition is false.
void demand(bool condition, const char* claim);

/// Defined by each target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size);
