#pragma once
// 1-based arrays whose first index varies fastest in memory.  The run data,
// the readers, the scans and the numerical routines all share this layout,
// so that a column such as Phenotype(:, t, e, r) is one contiguous run.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <string>

#include "text/Fatal.h"

namespace tov {

// A non-owning window on 1-based data of Rank dimensions.
template <class T, int Rank>
class ArrayView {
 public:
  ArrayView() = default;
  template <class... Extents>
  explicit ArrayView(T* data, Extents... extents) : data_(data) {
    static_assert(sizeof...(Extents) == Rank, "one extent per dimension");
    const std::int64_t e[] = {static_cast<std::int64_t>(extents)...};
    std::size_t stride = 1;
    for (int k = 0; k < Rank; ++k) {
      extent_[k] = e[k] < 0 ? 0 : e[k];
      stride_[k] = stride;
      stride *= static_cast<std::size_t>(extent_[k]);
    }
    size_ = stride;
  }

  template <class... Index>
  T& operator()(Index... index) const {
    static_assert(sizeof...(Index) == Rank, "one index per dimension");
    return data_[Offset(index...)];
  }

  // Extent of dimension k, counted from 1.
  std::int64_t Extent(int k) const { return extent_[k - 1]; }
  std::size_t Size() const { return size_; }
  T* Data() const { return data_; }
  T* begin() const { return data_; }
  T* end() const { return data_ + size_; }

 private:
  template <class... Index>
  std::size_t Offset(Index... index) const {
    const std::int64_t i[] = {static_cast<std::int64_t>(index)...};
    std::size_t offset = 0;
    for (int k = 0; k < Rank; ++k) offset += static_cast<std::size_t>(i[k] - 1) * stride_[k];
    return offset;
  }

  T* data_ = nullptr;
  std::array<std::int64_t, Rank> extent_{};
  std::array<std::size_t, Rank> stride_{};
  std::size_t size_ = 0;
};

// An owning array with an "allocated" state of its own: an array of zero
// elements is allocated, a released one is not.
template <class T, int Rank>
class Array {
 public:
  Array() = default;
  template <class... Extents>
  explicit Array(Extents... extents) {
    Allocate(extents...);
  }
  Array(const Array& other) { *this = other; }
  Array& operator=(const Array& other) {
    if (this == &other) return *this;
    Release();
    if (other.allocated_) {
      storage_ = NewStorage(other.view_.Size());
      for (std::size_t i = 0; i < other.view_.Size(); ++i) storage_[i] = other.storage_[i];
      view_ = Rebase(other.view_, storage_.get());
      allocated_ = true;
    }
    return *this;
  }
  Array(Array&&) noexcept = default;
  Array& operator=(Array&&) noexcept = default;

  // Allocates with value-initialised elements; an allocated array is
  // released first.  Negative extents count as 0.
  template <class... Extents>
  void Allocate(Extents... extents) {
    static_assert(sizeof...(Extents) == Rank, "one extent per dimension");
    Release();
    std::size_t total = 1;
    for (std::int64_t e : {static_cast<std::int64_t>(extents)...}) {
      const auto n = static_cast<std::size_t>(e < 0 ? 0 : e);
      if (n != 0 && total > std::numeric_limits<std::size_t>::max() / sizeof(T) / n)
        FatalRuntimeFailure("insufficient memory for an array of that size");
      total *= n;
    }
    storage_ = NewStorage(total);
    view_ = ArrayView<T, Rank>(storage_.get(), extents...);
    allocated_ = true;
  }

  void Release() {
    storage_.reset();
    view_ = ArrayView<T, Rank>();
    allocated_ = false;
  }

  bool IsAllocated() const { return allocated_; }
  void Fill(const T& value) {
    for (T& element : view_) element = value;
  }

  template <class... Index>
  T& operator()(Index... index) {
    return view_(index...);
  }
  template <class... Index>
  const T& operator()(Index... index) const {
    return view_(index...);
  }

  std::int64_t Extent(int k) const { return view_.Extent(k); }
  std::size_t Size() const { return view_.Size(); }
  T* Data() { return view_.Data(); }
  const T* Data() const { return view_.Data(); }
  T* begin() { return view_.begin(); }
  T* end() { return view_.end(); }
  const T* begin() const { return view_.begin(); }
  const T* end() const { return view_.end(); }
  const ArrayView<T, Rank>& View() { return view_; }

 private:
  static std::unique_ptr<T[]> NewStorage(std::size_t count) {
    T* p = new (std::nothrow) T[count == 0 ? 1 : count]();
    if (p == nullptr) FatalRuntimeFailure("insufficient memory for an array of " + std::to_string(count) + " elements");
    return std::unique_ptr<T[]>(p);
  }
  static ArrayView<T, Rank> Rebase(const ArrayView<T, Rank>& shape, T* data) {
    return RebaseImpl(shape, data, std::make_integer_sequence<int, Rank>());
  }
  template <int... K>
  static ArrayView<T, Rank> RebaseImpl(const ArrayView<T, Rank>& shape, T* data, std::integer_sequence<int, K...>) {
    return ArrayView<T, Rank>(data, shape.Extent(K + 1)...);
  }

  std::unique_ptr<T[]> storage_;
  ArrayView<T, Rank> view_;
  bool allocated_ = false;
};

// A small 1-based array of fixed length, for result records such as AOV.
template <class T, int N>
struct FixedArray {
  std::array<T, N> Element{};
  T& operator()(int i) { return Element[static_cast<std::size_t>(i - 1)]; }
  const T& operator()(int i) const { return Element[static_cast<std::size_t>(i - 1)]; }
  void Fill(const T& value) { Element.fill(value); }
  T* Data() { return Element.data(); }
  static constexpr int Size() { return N; }
};

}  // namespace tov
