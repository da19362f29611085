#pragma once

#include <QWidget>

class QLabel;
class QSlider;

namespace ztm {

/// A vertical slider for whole numbers with a caption above, numbers along it and its value
/// below. It is moved by dragging, by clicks on its track, by the wheel and by the keys: arrows
/// for a small step, Page Up and Page Down for a large one, Home and End. A value set by the
/// program is limited to the range; `ValueChanged` tells of the user's actions only.
class ValueSlider final : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double value READ Value WRITE SetValue)
    Q_PROPERTY(double minimum READ Minimum WRITE SetMinimum)
    Q_PROPERTY(double maximum READ Maximum WRITE SetMaximum)
    Q_PROPERTY(QString caption READ Caption WRITE SetCaption)

public:
    /// A slider from 0 to 100.
    explicit ValueSlider(QWidget *parent = nullptr);

    double Value() const;
    void SetValue(double value);
    double Minimum() const;
    void SetMinimum(double value);
    double Maximum() const;
    void SetMaximum(double value);

    /// The steps of an arrow key or wheel notch, and of Page Up and Page Down.
    void SetSteps(int small, int large);

    QString Caption() const;
    void SetCaption(const QString &text);

    /// The middle of the handle when it stands for that value, in widget coordinates.
    Q_INVOKABLE QPointF HandlePosition(double value) const;

signals:
    /// The user has moved the slider.
    void ValueChanged(double value);

    /// The user has let go of the handle.
    void Released();

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void ShowValue();
    void FitScale();

    QLabel *captionLabel;
    QSlider *slider;
    QLabel *valueLabel;
};

} // namespace ztm
