// What the fuzz targets share: a place for files, and a run that can be told
// from its first bytes.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Makes a folder in memory, if there is such a place, and enters it; it holds
/// an output directory for pages. Standard output goes nowhere from then on.
/// Further calls do nothing. The folder is removed when the program ends.
void enter_scratch_folder();

/// Writes a file into the folder.
void write_source(const char* name, std::string_view text);

/// Takes the first two bytes of an input for html_style, every bit of which the
/// engine knows can be set, and for the verbosity. Returns the rest.
std::string_view take_settings(std::string_view input);

/// The bytes that a fuzzer hands over.
inline std::string_view bytes_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process, and says why, when something does not hold.
void demand(bool holds, const char* what);

/// What each target defines.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size);
