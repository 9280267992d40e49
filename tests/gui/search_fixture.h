// The frame fixture of the setup window and Find tests: the position the
// setup window keeps for the whole run starts empty in every test.
#pragma once

#include <string>

#include "board/search_window.h"
#include "chess/board.h"
#include "shell_fixture.h"

namespace vantrel::testing {

inline const std::string kStartLayout(chess::kInitialLayout);

// The layout s with one square changed.
inline std::string With(std::string s, int square, char c) {
    s.replace(static_cast<std::size_t>(square), 1, 1, c);
    return s;
}

class SearchTest : public FrameTest {
protected:
    void SetUp() override {
        FrameTest::SetUp();
        FrmSearchTree::szSetupBoard.clear();
    }
    void TearDown() override {
        FrmSearchTree::szSetupBoard.clear();
        FrameTest::TearDown();
    }
};

}  // namespace vantrel::testing
