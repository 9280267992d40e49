// The game record that the readers fill, one game at a time.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "library/errors.h"

namespace vantrel::import {

inline constexpr int kMaxPly = 250;

// The text of a move slot: a move as the file wrote it, or slot 0's game
// name. Texts of up to 22 bytes, nearly every move and many names, stand in
// the slot itself, so that a reader fills it with a few stores and no call;
// longer ones go to a string that the slot keeps for them from then on.
class SlotText {
public:
    SlotText() = default;
    SlotText(const SlotText& other) { assign(other.view()); }
    SlotText(SlotText&&) noexcept = default;
    SlotText& operator=(const SlotText& other) {
        if (this != &other) assign(other.view());
        return *this;
    }
    SlotText& operator=(SlotText&&) noexcept = default;
    SlotText& operator=(std::string_view text) {
        assign(text);
        return *this;
    }

    void assign(std::string_view text) {
        if (text.size() <= kInPlace) {
            std::memmove(in_, text.data(), text.size());
            size_ = static_cast<uint8_t>(text.size());
            return;
        }
        if (!long_) long_ = std::make_unique<std::string>();
        long_->assign(text);
        size_ = kLong;
    }
    // The same for a text of 2 to 8 bytes: two copies that overlap in the
    // middle put every byte in its place.
    void AssignShort(const char* text, size_t size) {
        if (size >= 4) {
            uint32_t front, back;
            std::memcpy(&front, text, 4);
            std::memcpy(&back, text + size - 4, 4);
            std::memcpy(in_, &front, 4);
            std::memcpy(in_ + size - 4, &back, 4);
        } else {
            uint16_t front, back;
            std::memcpy(&front, text, 2);
            std::memcpy(&back, text + size - 2, 2);
            std::memcpy(in_, &front, 2);
            std::memcpy(in_ + size - 2, &back, 2);
        }
        size_ = static_cast<uint8_t>(size);
    }
    void clear() { size_ = 0; }

    bool empty() const { return size_ == 0; }
    size_t size() const { return size_ == kLong ? long_->size() : size_; }
    std::string_view view() const { return size_ == kLong ? std::string_view(*long_) : std::string_view(in_, size_); }
    operator std::string_view() const { return view(); }
    std::string str() const { return std::string(view()); }
    char operator[](size_t i) const { return view()[i]; }
    // A text of 1 to 7 bytes as a word: its bytes as they lie in memory,
    // zeros behind them. 0 for an empty text or a longer one.
    uint64_t ShortBytes() const {
        if (size_ == 0 || size_ > 7) return 0;
        uint64_t bytes;
        std::memcpy(&bytes, in_, 8);
        const unsigned unused = 64 - 8 * size_;
        return bytes & (std::endian::native == std::endian::little ? ~uint64_t{0} >> unused : ~uint64_t{0} << unused);
    }

    friend bool operator==(const SlotText& a, std::string_view b) { return a.view() == b; }
    friend std::ostream& operator<<(std::ostream& out, const SlotText& text) { return out << text.view(); }

private:
    static constexpr size_t kInPlace = 22;
    static constexpr uint8_t kLong = 0xFF;
    char in_[kInPlace] = {};
    uint8_t size_ = 0;
    std::unique_ptr<std::string> long_;
};

// GameMoves(0) is the game's name, GameComments(0) its own comment; slots 1
// to n hold the move and the comment of each ply. Odd plies are White's.
struct GameRecord {
    std::array<SlotText, kMaxPly + 1> GameMoves;
    std::array<std::string, kMaxPly + 1> GameComments;
    // The slots past this one are empty: the readers say how far a game went.
    int16_t used = kMaxPly;

    void Clear() {
        for (int i = 0; i <= used; ++i) {
            GameMoves[static_cast<size_t>(i)].clear();
            GameComments[static_cast<size_t>(i)].clear();
        }
        used = kMaxPly;
    }
};

}  // namespace vantrel::import
