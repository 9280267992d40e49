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

void GameFeed::ReadAhead() {
    std::unique_lock<std::mutex> hold(lock_);
    try {
        for (;;) {
            writable_.wait(hold, [&] { return stop_ || written_ - taken_ < kSlots; });
            if (stop_) break;
            Game& game = *slots_[written_ % kSlots];
            hold.unlock();
            const bool atEnd = state_.ImportAtEnd;
            if (!atEnd) ReadOne(game);
            hold.lock();
            if (atEnd) break;
            ++written_;
            if (written_ >= wanted_) readable_.notify_one();
        }
    } catch (...) {
        if (!hold.owns_lock()) hold.lock();
        failure_ = std::current_exception();
    }
    finished_ = true;
    readable_.notify_one();
}

GameFeed::Game* GameFeed::Next() {
    if (!ahead_) {
        current_ = nullptr;
        if (state_.ImportAtEnd) return nullptr;
        current_ = slots_[0].get();
        return ReadOne(*current_);
    }
    if (current_ != nullptr) ++next_;
    current_ = nullptr;
    // The games already known to be read are handed out without a word to
    // the reader. It hears of the ones played a quarter of the slots at a
    // time, so that it has room to read on, and is asked for more when this
    // side has run out.
    if (next_ != ready_ && next_ - taken_ >= kSlots / 4) {
        std::lock_guard<std::mutex> hold(lock_);
        taken_ = next_;
        writable_.notify_one();
    }
    if (next_ == ready_) {
        std::unique_lock<std::mutex> hold(lock_);
        taken_ = next_;
        writable_.notify_one();
        // Woken for a quarter of the slots at a time, not for every game.
        wanted_ = next_ + kSlots / 4;
        readable_.wait(hold, [&] { return written_ >= wanted_ || finished_; });
        wanted_ = SIZE_MAX;
        ready_ = written_;
        if (next_ == ready_) {
            if (failure_) {
                // The reader stopped in the game after the last one read.
                current_ = slots_[written_ % kSlots].get();
                std::rethrow_exception(failure_);
            }
            return nullptr;
        }
    }
    current_ = slots_[next_ % kSlots].get();
    return current_;
}

void GameFeed::Stop() {
    if (!reader_.joinable()) return;
    {
        std::lock_guard<std::mutex> hold(lock_);
        stop_ = true;
    }
    writable_.notify_one();
    reader_.join();
}

}  // namespace vantrel::import
