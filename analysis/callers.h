// The references to one program unit.

#ifndef ZELKOR_ANALYSIS_CALLERS_H
#define ZELKOR_ANALYSIS_CALLERS_H

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <set>

#include "analysis/calling.h"

/// An ordered set of references, without duplicates. Sets that hold the same
/// may share their records: a name with hundreds of units would otherwise take
/// hundreds of records for each reference to it. What is added to one set alone
/// is never seen in another. Unlike those of a std::set, iterators hold only
/// until something is added.
class Callers {
 public:
  using Records = std::pmr::set<Calling>;
  using value_type = Records::value_type;
  using const_iterator = Records::const_iterator;

  /// The empty set.
  Callers() = default;
  Callers(const Callers&) = delete;
  Callers& operator=(const Callers&) = delete;

  const_iterator begin() const { return shown().begin(); }
  const_iterator end() const { return shown().end(); }
  std::size_t size() const { return shown().size(); }
  bool empty() const { return shown().empty(); }
  const_iterator find(const Calling& calling) const {
    return shown().find(calling);
  }

  /// Adds a reference to this set alone; one that is known already is not added
  /// again.
  void insert(const Calling& calling);

  /// Shares the records of another set, instead of its own, until something is
  /// added to one of the two alone.
  void share(Callers& other);

  /// Adds a reference to this set and all that share with it, if they are so
  /// many, this one included. Returns false, and adds nothing, if they are not.
  bool insert_in_all(int sets, const Calling& calling);

 private:
  const Records& shown() const;

  std::shared_ptr<Records> records;  // null: none
};

#endif
