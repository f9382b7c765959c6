// The paint-effect and transition-effect dialogs: a list of effect classes and their effects,
// grain, delay, wand, colours, the transparent colour, passes (paint) or the fill of the
// transition (pattern or gradient and its four colours), with a live preview on the
// demonstration picture.
#pragma once

#include <QDialog>
#include <QImage>
#include <cstdint>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;
class QLabel;

namespace tw::slides {

class EffectImage;

struct EffectValues {
    int effect = 0;
    int grain = 5;
    int delay = 10;
    int wand = 10;
    uint32_t color = 0;
    bool transparent = false;
    uint32_t transparentColor = 0;
    // Paint: the passes this choice takes (the multiple-effects loop).
    int passes = 1;
    // Transition: the fill style (below 1000 a line pattern, 1000 and above a gradient), the
    // four pattern colours (gradient start and end, pattern fore and back) and the step count.
    int style = 0;
    uint32_t pattern[4] = {255, 16711680, 255, 16711680};
    int option = 256;
};

class EffectDialog : public QDialog {
    Q_OBJECT
public:
    enum Kind { Paint, Transition };
    // AllowPasses: the pass count can be set (the multiple-effects loop).
    EffectDialog(Kind kind, const EffectValues &v, const QImage &demo, bool allowPasses, QWidget *parent);
    ~EffectDialog() override;
    EffectValues values() const;

private:
    void fillEffects(int classIndex);
    void selectEffect(int effect);
    void pickColor(uint32_t *target, QPushButton *button, const QString &title);
    void showColor(QPushButton *b, uint32_t c);
    void replay();

    Kind kind_;
    EffectValues v_;
    QListWidget *classes_ = nullptr;
    QListWidget *effects_ = nullptr;
    QLineEdit *number_ = nullptr, *grain_ = nullptr, *delay_ = nullptr, *wand_ = nullptr, *passes_ = nullptr;
    QCheckBox *transparent_ = nullptr;
    QPushButton *colorBtn_ = nullptr, *transparentBtn_ = nullptr, *patternBtn_[4] = {};
    QComboBox *style_ = nullptr;
    EffectImage *preview_ = nullptr;
    bool filling_ = false;
};

// The fill styles the transition dialog offers, in order, with their numbers.
struct FillStyleRow {
    int style;
    QString name;
};
const std::vector<FillStyleRow> &fillStyleRows();

}  // namespace tw::slides
