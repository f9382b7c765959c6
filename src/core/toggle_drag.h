// The hold-to-drag rule of the small button floating over the picture: a press held for
// more than a quarter of a second turns the next move into a drag; a shorter press is a
// click. Times are seconds, as the program's clock gives them.
#pragma once

namespace tw {

class ToggleDrag {
public:
    void mouseDown(double now)
    {
        if (armed_) return;
        stored_ = now;
        armed_ = true;
    }
    // True when this move begins the drag.
    bool mouseMove(double now)
    {
        if (!armed_ || dragging_) return false;
        if (now - stored_ > 0.25) {
            stored_ = 0;  // later moves compare against 0 and pass at once
            dragging_ = true;
            return true;
        }
        return false;
    }
    // Mouse up without a drag: the press was a click.
    void mouseUp()
    {
        stored_ = 0;
        armed_ = false;
        dragging_ = false;
    }
    // A drop: true when the button is to move to the drop position.
    bool drop(bool overPicture)
    {
        const bool move = overPicture && armed_ && dragging_;
        armed_ = false;
        dragging_ = false;
        stored_ = 0;
        return move;
    }
    bool armed() const { return armed_; }
    bool dragging() const { return dragging_; }

private:
    double stored_ = 0;
    bool armed_ = false;
    bool dragging_ = false;
};

}  // namespace tw
