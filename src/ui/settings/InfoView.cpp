#include "ui/settings/InfoView.h"

#include "base/Text.h"
#include "links/LinkStore.h"
#include "links/favicons/FaviconSettings.h"
#include "platform/Clock.h"
#include "services/UpdateManager.h"
#include "ui/common/ExchangeDialogs.h"
#include "ui/common/Icons.h"
#include "ui/settings/PageScroll.h"
#include "ui/settings/Sections.h"
#include "ui/settings/SymbolTile.h"
#include "ui/settings/WelcomeSample.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

#include <array>

namespace orvelle {

namespace {

constexpr int tileSide = 40;
constexpr int windowWidth = 600;
/// Of the screen's height, for the title bar.
constexpr int roomForFrame = 48;
/// Beside each other, so that everything fits a small screen.
constexpr int featuresInRow = 2;

struct Feature {
    const char *symbol;
    const char *colorKey;
    TextKey title;
    TextKey description;
};

const std::array<Feature, 4> features{{
    {"folder.fill", "orange", "welcome.featureFolders"_text, "welcome.featureFoldersDesc"_text},
    {"doc.fill", "blue", "welcome.featureFiles"_text, "welcome.featureFilesDesc"_text},
    {"globe", "green", "welcome.featureWeb"_text, "welcome.featureWebDesc"_text},
    {"network", "purple", "welcome.featureNetwork"_text, "welcome.featureNetworkDesc"_text},
}};

QLabel *titleLabel(QWidget *parent)
{
    auto *label = new QLabel(text("welcome.title"_text), parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.7);
    font.setBold(true);
    label->setFont(font);
    return label;
}

QPushButton *wayButton(const char *name, const char *symbol, const QString &title, QWidget *parent)
{
    auto *button = new QPushButton(symbolIcon(QString::fromLatin1(symbol)), title, parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

QVBoxLayout *featureTexts(const Feature &feature, QWidget *parent)
{
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(sectionTitle(text(feature.title), parent));
    texts->addWidget(sectionSubtitle(text(feature.description), parent));
    // The names of a row stand on one line, however long their texts are.
    texts->addStretch(1);
    return texts;
}

} // namespace

InfoView::InfoView(const SettingsServices &services, QWidget *parent)
    : QDialog(parent),
      m_services(services),
      m_addSample(wayButton("addSample", "plus", text("welcome.addSample"_text), this)),
      m_importBookmarks(wayButton("welcomeImport", "square.and.arrow.down", text("welcome.importBookmarks"_text), this))
{
    setObjectName(QStringLiteral("Welcome"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("welcome.title"_text));

    QWidget *page = makePage();
    auto *scroll = new PageScroll(page, this);
    auto *start = new QPushButton(text("welcome.start"_text), this);
    start->setDefault(true);
    connect(start, &QPushButton::clicked, this, &QDialog::accept);
    auto *foot = new QHBoxLayout;
    foot->setContentsMargins(28, 6, 28, 20);
    foot->addStretch(1);
    foot->addWidget(start);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(scroll, 1);
    column->addLayout(foot);
    setTabOrder(m_importBookmarks, start);
    start->setFocus();
    // As high as its wrapped lines want it, on a screen that has the room.
    const int width = qMax(windowWidth, column->totalMinimumSize().width());
    const int height = page->layout()->totalHeightForWidth(width) + foot->sizeHint().height();
    setMinimumWidth(width);
    resize(width, qMin(height, screen()->availableSize().height() - roomForFrame));
}

QWidget *InfoView::makePage()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(28, 24, 28, 6);
    column->setSpacing(14);
    auto *head = new QVBoxLayout;
    head->setSpacing(4);
    head->addWidget(titleLabel(page));
    head->addWidget(sectionSubtitle(text("welcome.subtitle"_text), page));
    column->addLayout(head);
    column->addLayout(makeFeatures());
    column->addWidget(makePrivacy());
    column->addWidget(makeWays());
    column->addStretch(1);
    return page;
}

QLayout *InfoView::makeFeatures()
{
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(14);
    int place = 0;
    for (const Feature &feature : features) {
        auto *tile =
            new SymbolTile(QString::fromLatin1(feature.symbol), QString::fromLatin1(feature.colorKey), tileSide, this);
        const int row = place / featuresInRow;
        const int column = 2 * (place % featuresInRow);
        grid->addWidget(tile, row, column, Qt::AlignTop);
        grid->addLayout(featureTexts(feature, this), row, column + 1);
        grid->setColumnStretch(column + 1, 1);
        ++place;
    }
    return grid;
}

QWidget *InfoView::makePrivacy()
{
    auto *privacy = new QWidget(this);
    auto *column = new QVBoxLayout(privacy);
    column->setContentsMargins(0, 6, 0, 0);
    column->setSpacing(4);
    column->addWidget(sectionTitle(text("welcome.privacy"_text), privacy));
    const auto addSwitch = [column, privacy](const char *name, const QString &title, const QString &hint, bool on) {
        auto *box = new QCheckBox(title, privacy);
        box->setObjectName(QString::fromLatin1(name));
        box->setChecked(on);
        column->addWidget(box);
        column->addWidget(checkBoxHint(hint, box));
        return box;
    };
    FaviconSettings &icons = m_services.favicons;
    connect(addSwitch("welcomeSiteIcons", text("settings.siteIcons"_text),
                      text("settings.siteIconsHint %@"_text, icons.serviceHost()), icons.isEnabled()),
            &QCheckBox::toggled, this, [&icons](bool on) { icons.setEnabled(on); });
    if (UpdateManager *updates = m_services.updates; updates && !updates->serviceHost().isEmpty()) {
        connect(addSwitch("welcomeUpdates", text("update.autoCheck"_text),
                          text("update.sent %@"_text, updates->serviceHost()), updates->autoCheckEnabled()),
                &QCheckBox::toggled, this, [updates](bool on) { updates->setAutoCheckEnabled(on); });
    }
    column->addSpacing(4);
    column->addWidget(sectionSubtitle(text("welcome.privacyNothingElse"_text), privacy));
    return privacy;
}

QWidget *InfoView::makeWays()
{
    auto *ways = new QWidget(this);
    auto *column = new QVBoxLayout(ways);
    column->setContentsMargins(0, 6, 0, 6);
    column->setSpacing(8);
    column->addWidget(sectionTitle(text("welcome.begin"_text), ways));
    auto *row = new QHBoxLayout;
    row->addWidget(m_addSample);
    row->addWidget(m_importBookmarks);
    row->addStretch(1);
    column->addLayout(row);
    connect(m_addSample, &QPushButton::clicked, this, &InfoView::addSample);
    connect(m_importBookmarks, &QPushButton::clicked, this, &InfoView::importBookmarks);
    return ways;
}

void InfoView::addSample()
{
    m_services.links.addLink(welcomeSample(m_services.links.fileBookmarks(), m_services.clock.now()));
    m_addSample->setEnabled(false);
    m_addSample->setText(text("welcome.sampleAdded"_text));
    m_addSample->setIcon(symbolIcon(QStringLiteral("checkmark.circle.fill")));
    m_importBookmarks->setFocus();
}

void InfoView::importBookmarks()
{
    accept();
    m_services.exchange.importBookmarks(parentWidget());
}

} // namespace orvelle
