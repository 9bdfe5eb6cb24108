#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace gantry {

class CaseArchive;

/// Base of an item that a `CExtCollection` owns.
class CExtCollectionObject {
 public:
  CExtCollectionObject() = default;
  CExtCollectionObject(const CExtCollectionObject&) = default;
  CExtCollectionObject& operator=(const CExtCollectionObject&) = default;
  virtual ~CExtCollectionObject() = default;

  virtual void Reserved() {}
  virtual void Serialize(CaseArchive& /*archive*/, int32_t /*version*/) {}
  virtual std::string DefaultName() const { return {}; }
};

/// A list of items that it owns and destroys with itself. Copies are deep. Not thread-safe.
template <class T>
class CExtCollection {
 public:
  using value_type = std::unique_ptr<T>;

  CExtCollection() = default;
  CExtCollection(const CExtCollection& other) {
    items_.reserve(other.Size());
    for (const auto& item : other) items_.push_back(std::make_unique<T>(*item));
  }
  CExtCollection& operator=(const CExtCollection& other) {
    CExtCollection copy(other);
    items_.swap(copy.items_);
    return *this;
  }
  CExtCollection(CExtCollection&&) noexcept = default;
  CExtCollection& operator=(CExtCollection&&) noexcept = default;
  ~CExtCollection() = default;

  size_t Size() const { return items_.size(); }
  bool IsEmpty() const { return items_.empty(); }
  T& operator[](size_t index) { return *items_[index]; }
  const T& operator[](size_t index) const { return *items_[index]; }

  T& Add(std::unique_ptr<T> item) {
    items_.push_back(std::move(item));
    return *items_.back();
  }
  void push_back(std::unique_ptr<T> item) { items_.push_back(std::move(item)); }
  /// Takes the item at `index` out and hands it to the caller.
  std::unique_ptr<T> TakeOut(size_t index) {
    std::unique_ptr<T> item = std::move(items_[index]);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    return item;
  }
  void RemoveAll() { items_.clear(); }
  /// Destroys the items for which `predicate`, given the owning pointer, holds.
  template <class Predicate>
  void RemoveIf(Predicate predicate) {
    std::erase_if(items_, predicate);
  }

  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  std::vector<std::unique_ptr<T>> items_;
};

}  // namespace gantry
