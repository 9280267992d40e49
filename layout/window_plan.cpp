#include "layout/window_plan.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vantrel {

CommentMovesPlan PlanCommentsMoves(int innerHeight, int boardHeight) {
    CommentMovesPlan plan;
    const int room = innerHeight - boardHeight;
    if (room > 2400) {
        plan.height = room / 2;
        plan.movesTop = plan.height;
        plan.stacked = false;
    } else {
        plan.height = std::max(0, room);
        plan.movesTop = 0;
        plan.stacked = true;
    }
    return plan;
}

Placement PlanBoard(int innerWidth, int innerHeight, int boardWidth, int boardHeight) {
    // A board larger than the inner area keeps its top left corner in view.
    return Placement{std::max(0, innerWidth - boardWidth), std::max(0, innerHeight - boardHeight), boardWidth,
                     boardHeight};
}

std::vector<Placement> PlanLibraryWindows(int count, int innerWidth, int innerHeight, int columnWidth, bool layered) {
    std::vector<Placement> plan;
    if (count <= 0) return plan;
    const int height = std::max(0, layered ? innerHeight : innerHeight / count);
    const int width = std::max(0, innerWidth - columnWidth);
    int top = 0;
    for (int i = 0; i < count; ++i) {
        plan.push_back(Placement{0, top, width, height});
        if (!layered) top += height;
    }
    return plan;
}

TreeWindowPlan PlanTreeWindow(int windowWidth, int windowHeight) {
    TreeWindowPlan plan;
    plan.pictureWidth = std::max(0, windowWidth);
    plan.listWidth = std::max(0, windowWidth - 1200);
    plan.treeWidth = std::max(0, windowWidth - 120);
    plan.treeHeight = std::max(0, windowHeight - 825);
    return plan;
}

Placement DefaultFrameGeometry(const Placement& room, int designWidth, int designHeight) {
    constexpr int kTwipsPerPixel = 12;
    const int most = INT16_MAX / kTwipsPerPixel;
    // 85% of the room, to the nearest pixel.
    const auto share = [](int length) { return static_cast<int>(std::floor(length * 0.85 + 0.5)); };
    const int width = std::min({std::max(designWidth, share(room.width)), room.width, most});
    const int height = std::min({std::max(designHeight, share(room.height)), room.height, most});
    // The room's middle pixel, the left or upper one of two.
    const auto middle = [](int start, int length) {
        return static_cast<int>((int64_t{start} + start + length - 1) / 2);
    };
    return Placement{middle(room.left, room.width) - width / 2, middle(room.top, room.height) - height / 2, width,
                     height};
}

Placement FitOnScreen(const Placement& outer, const Placement& available) {
    Placement fitted{outer.left, outer.top, std::min(outer.width, available.width),
                     std::min(outer.height, available.height)};
    fitted.left = std::clamp(fitted.left, available.left, available.left + available.width - fitted.width);
    fitted.top = std::clamp(fitted.top, available.top, available.top + available.height - fitted.height);
    return fitted;
}

}  // namespace vantrel
