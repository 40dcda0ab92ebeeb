#include "ribbon.h"

#include "icons.h"
#include "ribbontable.h"

#include <QAction>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdlib>

namespace tv::shell {


namespace {

constexpr int kLargeIcon = 32;
constexpr int kSmallIcon = 16;
constexpr int kSmallRows = 3;

// One accent per page keeps the monochrome icon set readable at a glance.
QColor accentOf(const QString& page)
{
    static const QHash<QString, QColor> colors = {
        {QStringLiteral("FICHEROS"), QColor(0x1f, 0x63, 0xa8)},
        {QStringLiteral("UTILIDADES"), QColor(0x0f, 0x7c, 0x86)},
        {QStringLiteral("CAMPAÑAS DE MARKETING"), QColor(0xc0, 0x56, 0x1b)},
        {QStringLiteral("TABLAS AUXILIARES"), QColor(0x6a, 0x4c, 0x9c)},
        {QStringLiteral("TABLAS COMUNES"), QColor(0x2e, 0x7d, 0x32)},
        {QStringLiteral("HERRAMIENTAS"), QColor(0x45, 0x5a, 0x64)},
    };
    return colors.value(page, QColor(0x1f, 0x4e, 0x79));
}

QStringList orderedUnique(const QStringList& in)
{
    QStringList out;
    for (const QString& s : in)
        if (!out.contains(s))
            out.append(s);
    return out;
}

const char* const kStyle = R"(
tv--shell--Ribbon { background: #1f4e79; }
tv--shell--Ribbon > QTabBar { background: transparent; }
tv--shell--Ribbon > QTabBar::tab { color: #e8f0f8; background: transparent; padding: 6px 16px 6px 16px; margin: 4px 1px 0 1px; border: 1px solid transparent; border-bottom: none; border-top-left-radius: 3px; border-top-right-radius: 3px; font-weight: bold; }
tv--shell--Ribbon > QTabBar::tab:hover:!selected { background: #2d6399; }
tv--shell--Ribbon > QTabBar::tab:selected { color: #1f3b57; background: #fbfcfe; border-color: #fbfcfe; }
QWidget#ribbonPage { background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #fbfcfe, stop:1 #e3eaf2); border-bottom: 1px solid #aebfd1; }
QFrame#ribbonGroup { background: transparent; border: none; border-right: 1px solid #c4d1df; }
QLabel#ribbonGroupCaption { color: #5b6b7c; padding-top: 1px; }
QToolButton { color: #1d2b3a; border: 1px solid transparent; border-radius: 3px; padding: 1px 2px; background: transparent; }
QToolButton:hover { background: #dcebfa; border-color: #a8c8ea; }
QToolButton:pressed, QToolButton:checked { background: #c2dbf4; border-color: #7fa9d6; }
QToolButton#ribbonAppButton { color: white; background: #c0561b; border: 1px solid #a5461a; padding: 4px 12px; margin: 4px 6px 0 4px; font-weight: bold; }
QToolButton#ribbonAppButton:hover { background: #d4682b; }
QToolButton#ribbonAppButton::menu-indicator { image: none; }
)";

} // namespace

Ribbon::Ribbon(QWidget* parent) : QTabWidget(parent)
{
    setObjectName(QStringLiteral("ribbon"));
    setAttribute(Qt::WA_StyledBackground, true);
    setDocumentMode(true);
    setUsesScrollButtons(false);
    setStyleSheet(QString::fromUtf8(kStyle));

    QStringList pages;
    for (const RibbonItem& it : ribbonItems())
        pages.append(it.page);
    for (const QString& page : orderedUnique(pages))
        addTab(buildPage(page), page);

    buildApplicationMenu();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

namespace {

// A long caption under a large icon goes on two lines, split at the blank
// nearest its middle; the action keeps the caption as it is.
QString twoLines(const QString& caption)
{
    if (caption.size() <= 10)
        return caption;
    int best = -1;
    for (int i = 0; i < caption.size(); ++i)
        if (caption[i] == QLatin1Char(' ') && (best < 0 || std::abs(i - caption.size() / 2) < std::abs(best - caption.size() / 2)))
            best = i;
    if (best < 0)
        return caption;
    return caption.left(best) + QLatin1Char('\n') + caption.mid(best + 1);
}

} // namespace


QAction* Ribbon::makeAction(const QString& command, const QString& caption, const QIcon& icon)
{
    auto* a = new QAction(icon, caption, this);
    a->setObjectName(command);
    a->setData(command);
    connect(a, &QAction::triggered, this, [this, command] { Q_EMIT commandTriggered(command); });
    mActions.insert(command, a);
    return a;
}

QWidget* Ribbon::buildPage(const QString& page)
{
    auto* content = new QWidget;
    content->setObjectName(QStringLiteral("ribbonPage"));
    content->setAttribute(Qt::WA_StyledBackground, true);
    auto* row = new QHBoxLayout(content);
    row->setContentsMargins(4, 4, 4, 2);
    row->setSpacing(0);
    QStringList groups;
    for (const RibbonItem& it : ribbonItems())
        if (it.page == page)
            groups.append(it.group);
    for (const QString& group : orderedUnique(groups))
        row->addWidget(buildGroup(page, group));
    row->addStretch(1);

    return content;
}

QWidget* Ribbon::buildGroup(const QString& page, const QString& group)
{
    const QColor accent = accentOf(page);
    auto* frame = new QFrame;
    frame->setObjectName(QStringLiteral("ribbonGroup"));
    auto* v = new QVBoxLayout(frame);
    v->setContentsMargins(3, 0, 3, 1);
    v->setSpacing(2);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(2);
    v->addLayout(buttons, 1);

    QVBoxLayout* smallColumn = nullptr;
    int smallCount = 0;
    for (const RibbonItem& it : ribbonItems()) {
        if (it.page != page || it.group != group)
            continue;
        if (it.kind == RibbonKind::Small) {
            if (!smallColumn || smallCount == kSmallRows) {
                smallColumn = new QVBoxLayout;
                smallColumn->setSpacing(0);
                buttons->addLayout(smallColumn);
                smallCount = 0;
            }
            auto* b = new QToolButton(frame);
            b->setDefaultAction(makeAction(it.command, it.caption, ui::tintedIcon(it.icon, accent, kSmallIcon)));
            b->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
            b->setIconSize(QSize(kSmallIcon, kSmallIcon));
            b->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
            smallColumn->addWidget(b);
            ++smallCount;
            mButtons.insert(it.command, b);
            continue;
        }
        if (smallColumn) {
            smallColumn->addStretch(1);
            smallColumn = nullptr;
        }
        if (it.kind == RibbonKind::LanguageBox) {
            auto* box = new QWidget(frame);
            auto* col = new QVBoxLayout(box);
            col->setContentsMargins(4, 2, 4, 0);
            col->setSpacing(4);
            auto* head = new QHBoxLayout;
            auto* icon = new QLabel(box);
            icon->setPixmap(ui::tintedIcon(it.icon, accent, kLargeIcon).pixmap(kLargeIcon, kLargeIcon));
            head->addWidget(icon);
            auto* label = new QLabel(it.caption, box);
            mLanguageCaption = it.caption;
            head->addWidget(label);
            head->addStretch(1);
            col->addLayout(head);
            mLanguage = new QComboBox(box);
            mLanguage->setObjectName(QStringLiteral("cbIdioma"));
            mLanguage->addItems(kLanguages);
            mLanguage->setMinimumWidth(120);
            label->setBuddy(mLanguage);
            col->addWidget(mLanguage);
            col->addStretch(1);
            buttons->addWidget(box);
            continue;
        }
        auto* b = new QToolButton(frame);
        QAction* a = makeAction(it.command, it.caption, ui::tintedIcon(it.icon, accent, kLargeIcon));
        a->setIconText(twoLines(it.caption));
        b->setDefaultAction(a);
        b->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        b->setIconSize(QSize(kLargeIcon, kLargeIcon));
        b->setMinimumWidth(52);
        b->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
        // Never narrower than the caption: an elided "Dise…rate" helps nobody.
        b->setMinimumWidth(std::max(52, b->sizeHint().width()));
        if (it.kind == RibbonKind::Menu) {
            auto* menu = new QMenu(b);
            for (const RibbonMenuItem& m : ribbonMenuItems())
                if (m.menu == it.command)
                    menu->addAction(makeAction(m.command, m.caption, {}));
            // The button only opens its menu; the entries are the commands.
            disconnect(a, &QAction::triggered, this, nullptr);
            b->setMenu(menu);
            b->setPopupMode(QToolButton::InstantPopup);
            mMenus.insert(it.command, menu);
        }
        buttons->addWidget(b);
        mButtons.insert(it.command, b);
    }
    if (smallColumn)
        smallColumn->addStretch(1);

    auto* caption = new QLabel(group, frame);
    caption->setObjectName(QStringLiteral("ribbonGroupCaption"));
    caption->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    QFont f = caption->font();
    f.setPointSizeF(f.pointSizeF() * 0.9);
    caption->setFont(f);
    // A group without a caption keeps the line, so all buttons line up.
    caption->setMinimumHeight(QFontMetrics(f).height());
    v->addWidget(caption);
    if (!group.isEmpty())
        mGroupCaptions.append(group);
    return frame;
}

void Ribbon::buildApplicationMenu()
{
    mAppMenu = new QMenu(this);
    mAppMenu->setObjectName(QStringLiteral("applicationMenu"));
    mAppMenu->addAction(makeAction(QStringLiteral("escanear"), QStringLiteral("Escanear documentación"),
                                   ui::themeIcon(QStringLiteral("scanner"))));
    mAppMenu->addSeparator();
    mAppMenu->addAction(makeAction(QStringLiteral("salir"), QStringLiteral("Salir del programa"),
                                   ui::themeIcon(QStringLiteral("application-exit"))));
    mAppButton = new QToolButton(this);
    mAppButton->setObjectName(QStringLiteral("ribbonAppButton"));
    mAppButton->setText(QStringLiteral("Archivo"));
    mAppButton->setMenu(mAppMenu);
    mAppButton->setPopupMode(QToolButton::InstantPopup);
    mAppButton->setToolButtonStyle(Qt::ToolButtonTextOnly);
    setCornerWidget(mAppButton, Qt::TopLeftCorner);
}

void Ribbon::setCommandVisible(const QString& command, bool visible)
{
    if (QAction* a = mActions.value(command))
        a->setVisible(visible);
    if (QToolButton* b = mButtons.value(command))
        b->setVisible(visible);
}

bool Ribbon::isCommandVisible(const QString& command) const
{
    if (QToolButton* b = mButtons.value(command))
        return !b->isHidden();
    const QAction* a = mActions.value(command);
    return a && a->isVisible();
}

QStringList Ribbon::pageTitles() const
{
    QStringList out;
    for (int i = 0; i < count(); ++i)
        out.append(tabText(i));
    return out;
}

QStringList Ribbon::groupCaptions() const
{
    return mGroupCaptions;
}

QStringList Ribbon::captions() const
{
    QStringList out;
    for (auto it = mButtons.cbegin(); it != mButtons.cend(); ++it)
        out.append(it.value()->defaultAction()->text());
    if (!mLanguageCaption.isEmpty())
        out.append(mLanguageCaption);
    for (auto it = mMenus.cbegin(); it != mMenus.cend(); ++it)
        for (const QAction* a : it.value()->actions())
            out.append(a->text());
    for (const QAction* a : mAppMenu->actions())
        if (!a->isSeparator())
            out.append(a->text());
    return out;
}

} // namespace tv::shell
