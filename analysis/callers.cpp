#include "analysis/callers.h"

// Records are small and many: in chunks they take less memory. What one run
// gives back is there for the next. Never destroyed, for the units of the last
// run are destroyed later than anything that is made here.
static std::pmr::memory_resource* chunks() {
  static auto* const memory = new std::pmr::unsynchronized_pool_resource(
      {/*max_blocks_per_chunk=*/1 << 12, /*largest_required_pool_block=*/64});
  return memory;
}

const Callers::Records& Callers::shown() const {
  static const Records none;
  return records == nullptr ? none : *records;
}

// Most references come in the order of the set.
static void add_to(Callers::Records& records, const Calling& calling) {
  records.insert(records.end(), calling);
}

void Callers::insert(const Calling& calling) {
  if (records == nullptr) {
    records = std::make_shared<Records>(chunks());
  } else if (records.use_count() > 1) {
    if (find(calling) != end()) return;
    records = std::make_shared<Records>(*records, chunks());
  }
  add_to(*records, calling);
}

void Callers::share(Callers& other) {
  if (other.records == nullptr)
    other.records = std::make_shared<Records>(chunks());
  records = other.records;
}

bool Callers::insert_in_all(int sets, const Calling& calling) {
  if (records == nullptr || records.use_count() != sets) return false;
  add_to(*records, calling);
  return true;
}
