// The look of the window as the reader tries it out. A sidebar or an accent is
// seen and stored at once; the font waits in its buffer for the settings to be
// saved, as everything else there does.
//
// Thread: interface thread.

#pragma once

#include "concurrency/TaskSlot.h"
#include "core/SettingsEdit.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"
#include "QuireApp/ViewModels/CustomColorPanelPresenter.h"

#include <QColor>
#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <stop_token>

namespace quire {

class AppModel;
class Clock;

class AppearanceViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(quire::ChoiceListModel *sidebars READ sidebars CONSTANT)
    Q_PROPERTY(QString sidebarAppearance READ sidebarAppearance NOTIFY changed)
    Q_PROPERTY(quire::ChoiceListModel *fonts READ fonts CONSTANT)
    Q_PROPERTY(QString interfaceFont READ interfaceFont NOTIFY changed)
    // The Nordic colours, and behind them the reader's own.
    Q_PROPERTY(quire::ChoiceListModel *accents READ accents CONSTANT)
    Q_PROPERTY(QString accent READ accent NOTIFY changed)
    Q_PROPERTY(QString customAccent READ customAccent CONSTANT) // the word of the reader's own
    Q_PROPERTY(QColor customAccentColor READ customAccentColor NOTIFY changed)

public:
    // All but the parent outlive this.
    AppearanceViewModel(
        AppModel &model, Clock &clock, CustomColorPanelPresenter &colorPanel, QObject *parent = nullptr);

    ChoiceListModel *sidebars() { return &m_sidebars; }
    QString sidebarAppearance() const;
    ChoiceListModel *fonts() { return &m_fonts; }
    QString interfaceFont() const;
    ChoiceListModel *accents() { return &m_accents; }
    QString accent() const;
    static QString customAccent();
    QColor customAccentColor() const;

    // The colour of a word of `accents`.
    Q_INVOKABLE QColor accentColorOf(const QString &word) const;

    // A word that is none of the choices is passed over, and so is every one
    // before the library is open: there is nothing to store it in.
    Q_INVOKABLE void chooseSidebar(const QString &word);
    Q_INVOKABLE void chooseFont(const QString &word);
    // The reader's own opens the colour panel, with the colour it has.
    Q_INVOKABLE void chooseAccent(const QString &word);

    // Takes every buffer from the settings in force.
    void load();

    // Puts the buffers among what the settings save.
    void enterInto(SettingsEdit &edit) const;

    // Stores at once an accent that waits for the reader to come to rest, for a
    // program that ends before that.
    void finishAccentSave();

Q_SIGNALS:
    void changed();

private:
    void takeCustomColor(const CustomAccentColor &color);
    void scheduleAccentSave();
    QCoro::Task<> saveAccentAfterCalm(std::stop_token stop);
    QCoro::Task<> saveAccent();
    void followSettings();

    AppModel &m_model;
    Clock &m_clock;
    CustomColorPanelPresenter &m_colorPanel;
    ChoiceListModel m_sidebars;
    ChoiceListModel m_fonts;
    ChoiceListModel m_accents;
    SidebarAppearance m_sidebarAppearance = SidebarAppearance::Snow;
    InterfaceFontChoice m_interfaceFont = InterfaceFontChoice::AvenirNext;
    AccentColorChoice m_accentColor = AccentColorChoice::Fjord;
    bool m_usesCustomAccentColor = false;
    CustomAccentColor m_customAccentColor;
    bool m_accentIsToBeSaved = false; // once the reader has come to rest
    TaskSlot m_accentSaveTask;
};

} // namespace quire
