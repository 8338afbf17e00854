#include "ui/settings/UpdateSection.h"

#include "base/Text.h"
#include "services/UpdateManager.h"
#include "ui/settings/Sections.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

namespace orvelle {

namespace {

template<typename Button>
Button *named(const char *name, const QString &title, QWidget *parent)
{
    auto *button = new Button(title, parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

} // namespace

UpdateSection::UpdateSection(UpdateManager &updates, QWidget *parent)
    : QWidget(parent),
      m_updates(updates),
      m_state(new QLabel(this)),
      m_download(named<QPushButton>("downloadUpdate", text("update.download"_text), this)),
      m_check(named<QPushButton>("checkForUpdates", text("update.checkNow"_text), this)),
      m_auto(named<QCheckBox>("autoCheckForUpdates", text("update.autoCheck"_text), this)),
      m_sent(checkBoxHint(QString(), m_auto))
{
    m_state->setObjectName(QStringLiteral("updateState"));
    m_state->setTextFormat(Qt::PlainText);
    m_state->setWordWrap(true);
    auto *row = new QHBoxLayout;
    row->addWidget(m_state, 1);
    row->addWidget(m_download);
    row->addWidget(m_check);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(4);
    column->addLayout(row);
    column->addWidget(m_auto);
    column->addWidget(m_sent);

    connect(m_check, &QPushButton::clicked, this, [this] { m_updates.checkForUpdates(true); });
    connect(m_download, &QPushButton::clicked, this, [this] { m_updates.openDownloadPage(); });
    connect(m_auto, &QCheckBox::clicked, this, [this](bool on) { m_updates.setAutoCheckEnabled(on); });
    connect(&updates, &UpdateManager::changed, this, &UpdateSection::refresh);
    refresh();
}

void UpdateSection::refresh()
{
    const QString host = m_updates.serviceHost();
    m_state->setText(stateText());
    m_state->setAccessibleName(m_state->text());
    m_download->setVisible(m_updates.availableUpdate().has_value());
    m_check->setEnabled(!host.isEmpty() && !m_updates.isChecking());
    m_auto->setChecked(m_updates.autoCheckEnabled());
    m_check->setVisible(!host.isEmpty());
    m_auto->setVisible(!host.isEmpty());
    m_sent->setVisible(!host.isEmpty());
    m_sent->setText(text("update.sent %@"_text, host));
    m_auto->setAccessibleDescription(m_sent->text());
}

QString UpdateSection::stateText() const
{
    if (m_updates.serviceHost().isEmpty())
        return text("update.state.noHost"_text);
    if (m_updates.isChecking())
        return text("update.checking"_text);
    if (const auto &update = m_updates.availableUpdate()) {
        const QString version = UpdateManager::displayVersion(update->version, update->build);
        const QString available = text("update.state.available %@"_text, version);
        return update->releaseDate ? available + u' ' + text("update.state.published %@"_text, *update->releaseDate)
                                   : available;
    }
    const auto checked = m_updates.lastCheckDate();
    if (!checked)
        return text("update.state.never"_text);
    return text("update.state.checked %@"_text,
                QLocale().toString(checked->toDateTime().toLocalTime(), QLocale::ShortFormat));
}

} // namespace orvelle
