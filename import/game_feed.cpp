#include "import/game_feed.h"

#include <cstdint>
#include <utility>

namespace vantrel::import {

GameFeed::GameFeed(LineSource& file, ImportState& state, Reader read, bool ahead)
    : file_(file), state_(state), read_(std::move(read)), ahead_(ahead) {
    const size_t slots = ahead_ ? kSlots : 1;
    for (size_t k = 0; k < slots; ++k) slots_.push_back(std::make_unique<Game>());
    if (ahead_) reader_ = std::thread([this] { ReadAhead(); });
}

GameFeed::Game* GameFeed::ReadOne(Game& game) {
    try {
        game.lastPly = read_(state_, game.record);
    } catch (...) {
        game.line = file_.LineNumber();
        throw;
    }
    game.bytes = file_.BytesRead();
    game.line = file_.LineNumber();
    return &game;
}

template <class Ready>
void GameFeed::WaitUntil(std::atomic<bool>& asleep, Ready ready) {
    for (int spin = 0; spin < 32; ++spin) {
        if (ready()) return;
        __builtin_ia32_pause();
    }
    std::unique_lock<std::mutex> hold(lock_);
    // Raised before the last look, so that the other side, having moved its
    // counter, either is seen here or sees the flag and wakes this one.
    asleep.store(true);
    wake_.wait(hold, ready);
    asleep.store(false);
}

void GameFeed::Wake(std::atomic<bool>& asleep) {
    if (!asleep.load()) return;
    { std::lock_guard<std::mutex> hold(lock_); }
    wake_.notify_all();
}

void GameFeed::ReadAhead() {
    size_t written = 0;
    size_t taken = 0;  // taken_ as this side saw it last
    try {
        for (;;) {
            if (written - taken >= kSlots) {
                taken = taken_.load();
                if (written - taken >= kSlots) {
                    WaitUntil(readerAsleep_, [&] { return stop_.load() || written - taken_.load() <= kSlots / 2; });
                    taken = taken_.load();
                }
            }
            if (stop_.load() || state_.ImportAtEnd) break;
            ReadOne(*slots_[written % kSlots]);
            // Stored before the flag is looked at, both in one order for both
            // sides, so that a player falling asleep can't miss this game.
            written_.store(++written);
            if (playerAsleep_.load() && written - taken_.load() >= kSlots / 4) Wake(playerAsleep_);
        }
    } catch (...) {
        failure_ = std::current_exception();
    }
    finished_.store(true);
    Wake(playerAsleep_);
}

GameFeed::Game* GameFeed::Next() {
    if (!ahead_) {
        current_ = nullptr;
        if (state_.ImportAtEnd) return nullptr;
        current_ = slots_[0].get();
        return ReadOne(*current_);
    }
    if (current_ != nullptr) {
        // The slots played go back to the reader a few at a time, and all
        // at once when this side is about to wait.
        ++next_;
        if (next_ % kGiveBack == 0 || next_ == ready_) {
            taken_.store(next_);
            if (readerAsleep_.load() && written_.load() - next_ <= kSlots / 2) Wake(readerAsleep_);
        }
    }
    current_ = nullptr;
    if (next_ == ready_) ready_ = written_.load(std::memory_order_acquire);
    if (next_ == ready_) {
        const size_t wanted = next_ + kSlots / 4;
        WaitUntil(playerAsleep_, [&] { return finished_.load() || written_.load() >= wanted; });
        ready_ = written_.load();
        if (next_ == ready_) {
            if (failure_) {
                // The reader stopped in the game after the last one read.
                current_ = slots_[next_ % kSlots].get();
                std::rethrow_exception(failure_);
            }
            return nullptr;
        }
    }
    current_ = slots_[next_ % kSlots].get();
    // The next game's first moves are fetched from the reader's core while
    // this one is played.
    if (next_ + 1 < ready_) {
        const Game& after = *slots_[(next_ + 1) % kSlots];
        const auto* moves = reinterpret_cast<const char*>(after.record.GameMoves.data());
        for (size_t line = 0; line < kFetched; line += 64) __builtin_prefetch(moves + line);
        __builtin_prefetch(&after.lastPly);
    }
    return current_;
}

void GameFeed::Stop() {
    if (!reader_.joinable()) return;
    stop_.store(true);
    Wake(readerAsleep_);
    reader_.join();
}

}  // namespace vantrel::import
