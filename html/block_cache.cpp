#include "html/block_cache.h"

#include <stdio.h>  // open_memstream()

#include <cstdlib>

#include "analysis/name_index.h"
#include "driver/settings.h"
#include "html/markup.h"

static const std::size_t max_bytes = 1 << 20;
static const std::size_t max_items_per_unit = 1 << 6;

BlockCache::BlockCache() : stream(open_memstream(&rendered, &rendered_size)) {}

BlockCache::~BlockCache() {
  std::fclose(stream);
  std::free(rendered);
}

void BlockCache::write(const Namesakes& units, std::size_t items,
                       std::FILE* html, const Render& render) {
  if (items > max_items_per_unit * static_cast<std::size_t>(units.count)) {
    render(html);
    return;
  }
  if (generation != Declaration::generation() || separator != slash ||
      bytes > max_bytes) {
    blocks.clear();
    bytes = 0;
    generation = Declaration::generation();
    separator = slash;
  }
  Block& block = blocks[units.first->second];
  if (block.text.empty() || block.items != items) {
    std::rewind(stream);
    render(stream);
    std::fflush(stream);
    bytes += rendered_size - block.text.size();
    block = {items, {rendered, rendered_size}};
  }
  put(html, block.text);
}
