#include "ui/settings/SyncSection.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Clock.h"
#include "sync/SyncControl.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/NoticeBar.h"
#include "ui/settings/Sections.h"
#include "ui/settings/SyncPlaceForm.h"
#include "ui/settings/SyncStateTexts.h"

#include <QCheckBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr int iconSide = 18;

QPushButton *namedButton(const char *name, const char *symbol, TextKey title, QWidget *parent)
{
    auto *button = new QPushButton(symbolIcon(QLatin1StringView(symbol)), text(title), parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

QCheckBox *namedBox(const char *name, TextKey title, QWidget *parent)
{
    auto *box = new QCheckBox(text(title), parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

QString heldBackText(const HeldBackChange &change)
{
    const QString device = change.device.isEmpty() ? text("cloudSync.heldBack.someDevice"_text) : change.device;
    const QLocale locale;
    return text("cloudSync.heldBack.who %@"_text, device) + u' ' +
           text("cloudSync.heldBack.removed %lld"_text, change.removal.removed) + u' ' +
           text("cloudSync.heldBack.of %lld"_text, change.removal.of) + u' ' +
           text("cloudSync.heldBack.nothingChanged"_text);
}

} // namespace

SyncSection::SyncSection(const SettingsServices &services, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_sync(*services.sync),
      m_autoSync(namedBox("autoSync", "cloudSync.autoSync"_text, this)),
      m_stateIcon(new QLabel(this)),
      m_state(new QLabel(this)),
      m_history(sectionSubtitle({}, this)),
      m_now(namedButton("syncNow", "arrow.triangle.2.circlepath", "cloudSync.syncNow"_text, this)),
      m_load(namedButton("syncLoad", "square.and.arrow.down", "cloudSync.load"_text, this)),
      m_notice(new NoticeBar(this)),
      m_form(new SyncPlaceForm(services.folderChooser, services.volumes, this)),
      m_protection(new QWidget(this)),
      m_guard(namedBox("syncGuard", "cloudSync.guard"_text, m_protection)),
      m_encryption(sectionSubtitle({}, m_protection)),
      m_encrypt(namedButton("syncEncrypt", "lock.fill", "cloudSync.encryptMore"_text, m_protection)),
      m_decrypt(namedButton("syncDecrypt", "xmark", "cloudSync.decryptMore"_text, m_protection))
{
    setObjectName(QStringLiteral("SyncSection"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(10);
    addHead(column);
    addState(column);
    m_notice->setObjectName(QStringLiteral("syncNotice"));
    column->addWidget(m_notice);
    column->addSpacing(4);
    column->addWidget(m_form);
    addProtection(column);
    connectControls();
    m_form->showPlace(m_sync.place());
    refresh();
}

void SyncSection::addHead(QBoxLayout *column)
{
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(sectionTitle(text("cloudSync.sectionTitle"_text), this));
    texts->addWidget(sectionSubtitle(text("cloudSync.sectionSubtitle"_text), this));
    column->addLayout(texts);
    column->addWidget(m_autoSync);
}

void SyncSection::addState(QBoxLayout *column)
{
    m_state->setObjectName(QStringLiteral("syncState"));
    m_state->setTextFormat(Qt::PlainText);
    m_state->setWordWrap(true);
    m_history->setObjectName(QStringLiteral("syncHistory"));
    m_stateIcon->setFixedWidth(iconSide);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(m_state);
    texts->addWidget(m_history);
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(m_stateIcon, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    row->addWidget(m_now, 0, Qt::AlignTop);
    row->addWidget(m_load, 0, Qt::AlignTop);
    column->addLayout(row);
}

void SyncSection::addProtection(QBoxLayout *column)
{
    auto *inside = new QVBoxLayout(m_protection);
    inside->setContentsMargins({});
    inside->setSpacing(6);
    inside->addWidget(m_guard);
    QLabel *hint = sectionSubtitle(text("cloudSync.guardHint"_text), m_protection);
    inside->addWidget(hint);
    m_encryption->setObjectName(QStringLiteral("syncEncryption"));
    auto *row = new QHBoxLayout;
    row->addWidget(m_encryption, 1);
    row->addWidget(m_encrypt, 0, Qt::AlignTop);
    row->addWidget(m_decrypt, 0, Qt::AlignTop);
    inside->addSpacing(4);
    inside->addLayout(row);
    column->addWidget(m_protection);
}

void SyncSection::connectControls()
{
    connect(m_autoSync, &QCheckBox::clicked, this, [this](bool on) {
        m_sync.setAutoSyncEnabled(on);
        refresh();
    });
    connect(m_guard, &QCheckBox::clicked, this, [this](bool on) {
        m_sync.setGuardEnabled(on);
        refresh();
    });
    connect(m_now, &QPushButton::clicked, this, &SyncSection::syncNow);
    connect(m_load, &QPushButton::clicked, this, &SyncSection::askToLoad);
    connect(m_form, &SyncPlaceForm::testWanted, this, &SyncSection::testPlace);
    connect(m_form, &SyncPlaceForm::configureWanted, this, &SyncSection::configure);
    connect(m_encrypt, &QPushButton::clicked, this, &SyncSection::askForPassphrase);
    connect(m_decrypt, &QPushButton::clicked, this, &SyncSection::askToRemoveEncryption);
    connect(&m_services.notifications, &Notifications::syncStatusChanged, this, &SyncSection::refresh);
    connect(&m_services.notifications, &Notifications::debugModeChanged, this, [this] {
        m_form->showPlace(m_sync.place());
        refresh();
    });
}

void SyncSection::refresh()
{
    using Use = SyncPlaceForm::Use;
    const SyncStatus status = m_sync.status();
    const bool isBusy = m_busy != Busy::No;
    const bool hasPlace = m_sync.place().kind != SyncPlace::Kind::None;
    m_autoSync->setChecked(m_sync.autoSyncEnabled());
    m_autoSync->setEnabled(hasPlace && !isBusy);
    m_now->setVisible(hasPlace);
    m_load->setVisible(hasPlace);
    m_now->setEnabled(!isBusy && status.state != SyncStatus::State::Working);
    m_load->setEnabled(!isBusy && status.state != SyncStatus::State::Working);
    m_guard->setChecked(m_sync.isGuardEnabled());
    m_protection->setVisible(hasPlace);
    m_form->setUse(m_busy == Busy::Choosing ? Use::None : isBusy ? Use::NoTest : Use::All);
    if (m_busy != Busy::Choosing)
        m_form->followPlace(m_sync.place());
    refreshState(status);
    dropOvertakenSheet();
    refreshNotice(status);
    refreshEncryption(status);
}

void SyncSection::refreshState(const SyncStatus &status)
{
    const bool hasPlace = m_sync.place().kind != SyncPlace::Kind::None;
    const SyncStateLook look = syncStateLook(hasPlace ? status.state : SyncStatus::State::Off);
    const auto color = nsColor(QLatin1StringView(look.colorKey));
    const QColor ink = palette().color(QPalette::WindowText);
    const QColor shown =
        color ? readable(toQColor(*color, palette()), palette().color(QPalette::Window), ink, textContrast(palette()))
              : ink;
    m_stateIcon->setPixmap(symbolPixmap(QLatin1StringView(look.symbol), iconSide, shown, devicePixelRatioF()));
    const Timestamp now = m_services.clock.now();
    m_state->setText(hasPlace ? syncStateText(status, now) : text("cloudSync.state.noPlace"_text));
    const QString history = hasPlace ? syncHistoryText(status, now) : QString();
    m_history->setText(history);
    m_history->setVisible(!history.isEmpty());
}

void SyncSection::refreshNotice(const SyncStatus &status)
{
    const auto held = m_sync.heldBack();
    if (held) {
        m_notice->showNotice(heldBackText(*held),
                             {{text("cloudSync.heldBack.preview"_text), [this] { showHeldBack(); }},
                              {text("cloudSync.heldBack.keep"_text), [this] { m_sync.rejectHeldBack(); }},
                              {text("cloudSync.heldBack.accept"_text), [this] { m_sync.acceptHeldBack(); }}},
                             false);
    } else if (status.state == SyncStatus::State::NeedsPassphrase) {
        m_notice->showNotice(text("cloudSync.passphraseNeeded"_text),
                             {{text("cloudSync.passphraseEnterMore"_text), [this] { askForPassphrase(); }}}, false);
    } else {
        m_notice->hide();
    }
}

void SyncSection::refreshEncryption(const SyncStatus &status)
{
    const bool needs = status.state == SyncStatus::State::NeedsPassphrase;
    const bool on = m_sync.isEncrypted();
    m_encryption->setText(on ? text("cloudSync.encryptedOn"_text) : text("cloudSync.encryptedOff"_text));
    m_encrypt->setVisible(!needs);
    m_encrypt->setText(on ? text("cloudSync.passphraseChangeMore"_text) : text("cloudSync.encryptMore"_text));
    m_encrypt->setEnabled(m_busy == Busy::No);
    m_decrypt->setVisible(on && !needs);
    m_decrypt->setEnabled(m_busy == Busy::No);
}

int SyncSection::begin(Busy busy)
{
    m_busy = busy;
    refresh();
    return ++m_begun;
}

bool SyncSection::ended(int begun)
{
    if (begun != m_begun)
        return false;
    m_busy = Busy::No;
    refresh();
    return true;
}

} // namespace orvelle
