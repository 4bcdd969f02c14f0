// An array that grows and shrinks by one element at its end, in pieces that
// never move: pushing and popping take constant time, and n elements cost their
// own size n times plus at most one unfilled piece.
#ifndef ORVIX_CONTAINERS_PIECEWISE_ARRAY_H
#define ORVIX_CONTAINERS_PIECEWISE_ARRAY_H

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace Orvix::component {

// `T` owns something by its bits: its address means nothing to it, and a new one
// owns nothing.
template <class T>
class PiecewiseArray {
 public:
  PiecewiseArray() = default;
  PiecewiseArray(PiecewiseArray&& other) noexcept { Swap(other); }
  ~PiecewiseArray() {
    while (size_ > 0) TakeLast();
  }

  [[nodiscard]] std::size_t size() const { return size_; }
  // 0-based, below size().
  [[nodiscard]] const T& operator[](std::size_t index) const { return *At(index); }

  void Append(T value) {
    AppendMade([&] { return std::move(value); });
  }
  // The same for what `make` returns, made in its place. `make` must not come
  // back to this array.
  template <class Make>
  void AppendMade(Make&& make) {
    if (size_ == room_) AddRoom();
    ::new (static_cast<void*>(At(size_))) T(make());
    ++size_;
  }

  // There is one.
  T TakeLast() {
    T value;  // owns nothing yet, and takes over the bits
    std::memcpy(static_cast<void*>(&value), At(--size_), sizeof value);
    if (size_ % kPiece == 0) DropLastPiece();
    return value;
  }

  void Swap(PiecewiseArray& other) noexcept {
    std::swap(pieces_, other.pieces_);
    std::swap(size_, other.size_);
    std::swap(room_, other.room_);
  }

 private:
  static constexpr std::size_t kPiece = 1024;
  static constexpr std::size_t kFirstRoom = 4;

  struct Freed {
    void operator()(T* piece) const { std::free(piece); }
  };

  [[nodiscard]] T* At(std::size_t index) const { return pieces_[index / kPiece].get() + index % kPiece; }

  static std::size_t Bytes(std::size_t elements) { return elements * sizeof(T); }

  // Every piece is whole, except the first one while it is the only one: it
  // doubles.
  void AddRoom() {
    if (room_ > 0 && room_ < kPiece) {
      void* const moved = std::realloc(static_cast<void*>(pieces_.front().get()), Bytes(room_ * 2));
      if (moved == nullptr) throw std::bad_alloc();
      static_cast<void>(pieces_.front().release());
      pieces_.front().reset(static_cast<T*>(moved));
      room_ *= 2;
      return;
    }
    const std::size_t added = room_ == 0 ? kFirstRoom : kPiece;
    std::unique_ptr<T, Freed> piece(static_cast<T*>(std::malloc(Bytes(added))));
    if (piece == nullptr) throw std::bad_alloc();
    pieces_.push_back(std::move(piece));
    room_ += added;
  }

  void DropLastPiece() {
    pieces_.pop_back();
    room_ = pieces_.size() * kPiece;
    if (pieces_.empty()) pieces_.shrink_to_fit();
  }

  std::vector<std::unique_ptr<T, Freed>> pieces_;
  std::size_t size_ = 0;
  std::size_t room_ = 0;
};

}  // namespace Orvix::component

#endif
