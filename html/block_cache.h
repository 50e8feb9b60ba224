// A cache of mark-up that appears in many places.

#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <unordered_map>

struct Namesakes;
class Declaration;

/// Caches blocks of mark-up, each made from all units of one name. A name with
/// hundreds of units is written thousands of times, each time with all of them.
/// The cache is emptied when the registry has changed, when `slash`, on which
/// the names of pages depend, has changed, and when the blocks take too much
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
  ///   units   the units of the name
  ///   items   the number of entries in the block. A cached block with another
  ///           number is out of date. A block of more than 64 items per unit is
  ///           never cached
  ///   render  writes the block to a stream; called when no block that is up to
  ///           date is in the cache
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

  // An in-memory stream into which all blocks are rendered, one at a time.
  char* rendered = nullptr;
  std::size_t rendered_size = 0;
  std::FILE* stream;
};
