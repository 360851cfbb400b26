// CustomColorPanelPresenter opens the one colour panel of the program and passes
// on every colour that is chosen in it. What the panel shows, as a wheel, a
// slider and a text, is told here as well.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Theme/HSVColor.h"

#include <QColor>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace quire {

class CustomColorPanelPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)

    Q_PROPERTY(QColor color READ color NOTIFY colorChanged)
    Q_PROPERTY(QColor brightest READ brightest NOTIFY colorChanged) // the same hue and saturation at full value
    Q_PROPERTY(QString hex READ hex NOTIFY colorChanged)
    Q_PROPERTY(QPointF wheelPlace READ wheelPlace NOTIFY colorChanged) // see HSVColor
    Q_PROPERTY(QString wheelWords READ wheelWords NOTIFY colorChanged)
    // In whole degrees, and in whole percent.
    Q_PROPERTY(int hue READ hue WRITE setHue NOTIFY colorChanged)
    Q_PROPERTY(int saturation READ saturation WRITE setSaturation NOTIFY colorChanged)
    Q_PROPERTY(int brightness READ brightness WRITE setBrightness NOTIFY colorChanged)
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY colorChanged) // brightness from 0 to 1

public:
    using Change = std::function<void(const CustomAccentColor &)>;

    explicit CustomColorPanelPresenter(QObject *parent = nullptr);

    // Opens the panel, or brings it to the front, with that colour, and calls
    // `onChange` with every other one that is chosen from then on. Whoever had
    // asked for it before is called no more.
    void show(const CustomAccentColor &initialColor, Change onChange);

    // Closes the panel; nobody is called any more. Harmless when it is closed.
    Q_INVOKABLE void detach();

    bool isShown() const { return m_isShown; }

    QColor color() const;
    QColor brightest() const;
    QString hex() const; // as HexColor writes it
    QPointF wheelPlace() const { return m_shown.wheelPlace(); }
    QString wheelWords() const; // hue and saturation, for a screen reader
    int hue() const;
    int saturation() const;
    int brightness() const;
    double value() const { return m_shown.value; }

    // Each is a choice of the reader's. What changes nothing passes unnoticed.
    void setHue(int degrees);
    void setSaturation(int percent);
    void setBrightness(int percent);
    void setValue(double value);
    Q_INVOKABLE void pickOnWheel(const QPointF &place);
    // From where the colour lies now.
    Q_INVOKABLE void moveOnWheel(double right, double down);
    // False when the text is no colour; see HexColor.
    Q_INVOKABLE bool enterHex(const QString &text);
    Q_INVOKABLE bool isWholeHex(const QString &text) const; // all of its six digits are there
    Q_INVOKABLE bool isShownHex(const QString &text) const; // it is the colour that is shown

Q_SIGNALS:
    void isShownChanged();
    void colorChanged();
    // Each time the panel is asked for.
    void presented();

private:
    void choose(const HSVColor &shown);
    void choose(const CustomAccentColor &color, const HSVColor &shown);

    bool m_isShown = false;
    CustomAccentColor m_color; // exactly as it was handed in, until another is chosen
    HSVColor m_shown; // the same; of a grey it knows the hue
    Change m_onChange; // empty while detached
};

} // namespace quire
