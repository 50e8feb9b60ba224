// Mark-up that many places show alike, rendered once.

#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <unordered_map>

struct Namesakes;
class Declaration;

/// Keeps blocks of mark-up that follow from the units of one name. A name with
/// hundreds of units is written thousands of times, each time with all of them.
/// Blocks are forgotten when the registry has changed, when `slash` has
/// changed, by which the pages in them are named, and when they take too much
/// memory together.
class BlockCache {
 public:
  using Render = std::function<void(std::FILE*)>;

  BlockCache();
  ~BlockCache();
  BlockCache(const BlockCache&) = delete;
  BlockCache& operator=(const BlockCache&) = delete;

  /// Writes a block.
  ///
  ///   units   the units of the name, all of which may show the block
  ///   items   the number of entries in the block. A kept block with another
  ///           number is out of date and is rendered again
  ///   render  writes the block to a stream. It is called when no block is kept
  ///           that is up to date. A block of more than 64 items for each unit
  ///           is never kept
  void write(const Namesakes& units, std::size_t items, std::FILE* html,
             const Render& render);

 private:
  struct Block {
    std::size_t items = 0;
    std::string text;
  };

  std::unordered_map<const Declaration*, Block> blocks;  // by the first unit
  std::size_t bytes = 0;                                 // of all blocks
  unsigned generation = 0;                               // of the registry
  char separator = '\0';

  // A stream into memory, used for all blocks one after the other.
  char* rendered = nullptr;
  std::size_t rendered_size = 0;
  std::FILE* stream;
};
