#include "StateIcons.h"

#include <QPainter>
#include <QPixmap>
#include <array>

namespace {
constexpr int Size = 12;

QPixmap ball(const QColor& fill)
{
    QPixmap picture(Size, Size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QRadialGradient shine(QPointF(4, 4), 8);
    shine.setColorAt(0, fill.lighter(160));
    shine.setColorAt(1, fill);
    painter.setBrush(shine);
    painter.setPen(QPen(fill.darker(170), 1));
    painter.drawEllipse(QRectF(0.5, 0.5, Size - 1, Size - 1));
    return picture;
}

QPixmap letterBall(QChar letter)
{
    QPixmap picture = ball(QColor(40, 170, 60));
    QPainter painter(&picture);
    QFont font(QStringLiteral("Tahoma"));
    font.setPixelSize(8);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor(0, 50, 0));
    painter.drawText(QRect(0, 0, Size, Size), Qt::AlignCenter, QString(letter));
    return picture;
}

QPixmap crossedBall()
{
    QPixmap picture = ball(QColor(150, 150, 150));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0, 0, 130), 2));
    painter.drawLine(QPointF(3, 3), QPointF(Size - 3, Size - 3));
    painter.drawLine(QPointF(Size - 3, 3), QPointF(3, Size - 3));
    return picture;
}
} // namespace

QIcon StateIcon(int index)
{
    static const std::array<QIcon, 6> icons = {QIcon(ball(Qt::white)),
                                               QIcon(letterBall(QLatin1Char('D'))),
                                               QIcon(letterBall(QLatin1Char('W'))),
                                               QIcon(letterBall(QLatin1Char('M'))),
                                               QIcon(ball(QColor(210, 30, 30))),
                                               QIcon(crossedBall())};
    return (index >= 1 && index <= 6) ? icons[index - 1] : QIcon();
}
