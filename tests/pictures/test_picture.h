// A small picture of two colours for the imaging tests: blue with a red top-left quarter.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>

namespace twtest {

inline QImage testPicture(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    QPainter p(&img);
    p.fillRect(img.rect(), QColor(40, 80, 160));
    p.fillRect(QRect(0, 0, w / 2, h / 2), QColor(200, 30, 30));
    return img;
}

}  // namespace twtest
