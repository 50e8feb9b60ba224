// A source file held in memory as lines and read like a standard stream.
//
// The declaration pass reads its files this way, so that the lines can be
// rewritten in place between loading and reading. Lines count from 1. Sizes are
// in bytes and include the closing NUL.

#pragma once

#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

/// The size of the largest piece of a physical line that is stored as one line,
/// closing NUL included.
constexpr int stored_line_size = 1024;

/// A source file in memory.
class ramFILE {
 public:
  /// Loads a file. Returns null when it cannot be opened or holds no line;
  /// nothing is reported. The caller owns the result.
  static ramFILE* New(const char* path);

  /// Reads the whole file from disk again, dropping the lines held so far, and
  /// rewinds. A read error keeps the lines read before it.
  virtual void reload() = 0;
  /// Whether the file has a name and at least one line.
  virtual bool ok() const = 0;
  /// Moves the read position back to the first line.
  virtual void rewind() = 0;
  /// Copies the next line into a buffer and moves on. Returns the length of
  /// the text now in the buffer, 0 at the end of the file.
  ///
  ///   size  of the buffer; like strncpy, the copy of a line that does not fit
  ///         with its NUL is cut to `size` bytes and left without a NUL. If it
  ///         is below 1, nothing is read or written, and 0 is returned
  virtual int fgets(char* buffer, int size) = 0;
  /// Whether the read position has passed the last line, which is so as soon
  /// as that line has been handed out. True when not ok().
  virtual bool at_eof() = 0;

  virtual ~ramFILE() = default;

 protected:
  ramFILE() = default;
  ramFILE(const ramFILE&) = delete;
  ramFILE& operator=(const ramFILE&) = delete;
};

/// The implementation of ramFILE, for code that edits the lines in place.
class ramFILE_imp final : public ramFILE {
 public:
  using Lines = std::vector<char*>;

  /// Keeps the path and loads the file.
  explicit ramFILE_imp(const char* path);

  void reload() override;
  bool ok() const override;
  void rewind() override;
  int fgets(char* buffer, int size) override;
  bool at_eof() override;

  /// The lines, each with its line end as read and a NUL. They may be
  /// overwritten, and replaced by texts that copy() made.
  Lines::iterator begin() { return lines.begin(); }
  Lines::iterator end() { return lines.end(); }

  /// A copy of a text, NUL added, that lives as long as the lines do.
  char* copy(std::string_view text);

  /// Drops every line. The read position is invalid until the next reload() or
  /// rewind().
  void release();

 private:
  std::pmr::monotonic_buffer_resource memory;  // of the lines
  std::string path;
  Lines lines;
  Lines::iterator cursor;
};

/// file->fgets(buffer, size): a length, not a pointer as with a stream.
int fgets(char* buffer, int size, ramFILE* file);

/// Deliberate: does nothing. A handle stays usable until its owner deletes
/// it. It exists so that a handle is used like a stream.
void fclose(ramFILE* file);

/// file->at_eof(); when `report` is set and the file is at its end, writes
/// "END OF FILE" and a line end to standard output first.
bool at_eof(ramFILE* file, bool report);
