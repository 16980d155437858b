// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstring>

namespace quayline {

// Bytes that are added at the end and taken from the front. Taking moves nothing: the room in front
// is used again when the buffer grows or becomes empty.
class ByteBuffer final {
 public:
  qsizetype Size() const { return end_ - begin_; }
  bool IsEmpty() const { return begin_ == end_; }
  QByteArrayView View() const { return {bytes_.constData() + begin_, Size()}; }

  // Room for at least `size` bytes after those in use. If there is less, the buffer grows to twice
  // that.
  char* Prepare(qsizetype size) {
    if (bytes_.size() - end_ < size) {
      MakeRoom(2 * size);
    }
    return bytes_.data() + end_;
  }
  // The first `size` bytes of that room are in use now.
  void Commit(qsizetype size) { end_ += size; }

  // An empty buffer takes the bytes as they are.
  void Append(const QByteArray& added) {
    if (IsEmpty()) {
      bytes_ = added;
      begin_ = 0;
      end_ = added.size();
      return;
    }
    std::memcpy(Prepare(added.size()), added.constData(), static_cast<size_t>(added.size()));
    Commit(added.size());
  }

  // Takes the first `size` bytes. All of them, where they fill their memory well, are not copied.
  QByteArray Take(qsizetype size) {
    if (begin_ == 0 && size == end_ && size >= bytes_.size() / 2) {
      bytes_.truncate(size);
      QByteArray all = std::move(bytes_);
      Clear();
      return all;
    }
    QByteArray first = View().first(size).toByteArray();
    Drop(size);
    return first;
  }

  void Drop(qsizetype size) {
    begin_ += size;
    if (begin_ == end_) {
      begin_ = end_ = 0;
    }
  }

  void Clear() { *this = {}; }

 private:
  // Moves the bytes in use to the front where that makes enough room and moves less than was taken,
  // so that each byte is moved once on average.
  void MakeRoom(qsizetype size) {
    if (begin_ < Size() || bytes_.size() - Size() < size) {
      QByteArray larger(std::max(Size() + size, begin_ == 0 ? Size() * 3 / 2 : 0),
                        Qt::Uninitialized);
      std::memcpy(larger.data(), bytes_.constData() + begin_, static_cast<size_t>(Size()));
      bytes_ = std::move(larger);
    } else {
      std::memmove(bytes_.data(), bytes_.constData() + begin_, static_cast<size_t>(Size()));
    }
    end_ = Size();
    begin_ = 0;
  }

  QByteArray bytes_;
  qsizetype begin_ = 0;
  qsizetype end_ = 0;
};

}  // namespace quayline
