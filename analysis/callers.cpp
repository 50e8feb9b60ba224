#include "analysis/callers.h"

#include <algorithm>

class Callers::Records {
 public:
  void add(const Calling& calling);
  const std::vector<Calling>& sorted();
  bool empty() const { return list.empty(); }

 private:
  std::vector<Calling> list;
  bool is_sorted = true;
};

static bool are_equal(const Calling& a, const Calling& b) {
  return !(a < b) && !(b < a);
}

void Callers::Records::add(const Calling& calling) {
  if (list.empty()) {
    list.push_back(calling);
    return;
  }
  const Calling& last = list.back();
  if (last.file == calling.file && last.line == calling.line) return;
  // Repeats are dropped before they make the list grow.
  if (list.size() == list.capacity() && sorted().size() > list.capacity() / 2)
    list.reserve(2 * list.capacity());
  is_sorted = is_sorted && list.back() < calling;
  list.push_back(calling);
}

const std::vector<Calling>& Callers::Records::sorted() {
  if (!is_sorted) {
    std::stable_sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end(), are_equal), list.end());
    is_sorted = true;
  }
  return list;
}

Callers::Callers() = default;
Callers::~Callers() = default;

const std::vector<Calling>& Callers::sorted() const {
  static const std::vector<Calling> none;
  return records == nullptr ? none : records->sorted();
}

bool Callers::empty() const { return records == nullptr || records->empty(); }

Callers::const_iterator Callers::find(const Calling& calling) const {
  const auto found = std::lower_bound(begin(), end(), calling);
  return found != end() && are_equal(*found, calling) ? found : end();
}

void Callers::insert(const Calling& calling) {
  if (records == nullptr)
    start_anew();
  else if (records.use_count() > 1)
    records = std::make_shared<Records>(*records);
  records->add(calling);
}

void Callers::insert_in_all(const Calling& calling) { records->add(calling); }

void Callers::start_anew() { records = std::make_shared<Records>(); }

void Callers::share(const Callers& other) { records = other.records; }
