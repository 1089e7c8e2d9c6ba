#include "app/ui/HelpWindow.h"

#include "platform/Failure.h"
#include "platform/qt/QtText.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>

namespace rv52 {

namespace {

constexpr int kPageRole = Qt::UserRole;

QUrl UrlOf(const std::string& page) {
    return QUrl(QStringLiteral("help:/") + ToQt(page));
}

QPushButton* AddButton(QHBoxLayout& bar, const char* name, const char* caption) {
    auto* button = new QPushButton(QString::fromLatin1(caption));
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    bar.addWidget(button);
    return button;
}

}  // namespace

HelpPage::HelpPage(QWidget* parent) : QTextBrowser(parent) {
    setObjectName(QStringLiteral("txtHelpPage"));
    setAccessibleName(QStringLiteral("Help page"));
    setOpenExternalLinks(false);
    setSearchPaths({});
    document()->setDocumentMargin(18);
    // The pages have colours of their own, which are meant for white; what has none, as the bullets of lists,
    // must not take a dark desktop's.
    auto paper = palette();
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::Text, Qt::black);
    setPalette(paper);
}

QVariant HelpPage::loadResource(int, const QUrl& name) {
    if (file_ == nullptr || name.scheme() != QLatin1String("help")) return {};
    const auto content = file_->Read(FromQt(name.path()));
    if (!content) return {};
    return QByteArray::fromStdString(*content);
}

void HelpPage::doSetSource(const QUrl& name, QTextDocument::ResourceType type) {
    const auto page = source().resolved(name);
    if (page.scheme() != QLatin1String("help") || !loadResource(type, page).isValid()) return;
    QTextBrowser::doSetSource(page, type);
}

// A press on marked text marks anew; the menu of the right button keeps the mark to copy it. Dragging it away
// instead would hold up everything else, a module that is being programmed with it, for as long as the button
// is down.
void HelpPage::mousePressEvent(QMouseEvent* event) {
    auto marked = textCursor();
    const bool extends = event->modifiers().testFlag(Qt::ShiftModifier);
    if (event->button() == Qt::LeftButton && marked.hasSelection() && !extends) {
        marked.clearSelection();
        setTextCursor(marked);
    }
    QTextBrowser::mousePressEvent(event);
}

HelpWindow::HelpWindow(QWidget* owner)
    : QWidget(owner, Qt::Window), contents_(new QTreeWidget), page_(new HelpPage(this)) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Corvane RV52 Help"));
    contents_->setObjectName(QStringLiteral("tvwContents"));
    contents_->setAccessibleName(QStringLiteral("Contents"));
    contents_->setHeaderHidden(true);
    contents_->setTextElideMode(Qt::ElideNone);
    contents_->setStyleSheet(QStringLiteral("QTreeView::item { padding: 3px 0; }"));

    auto* bar = new QHBoxLayout;
    auto* back = AddButton(*bar, "cmdBack", "&Back");
    auto* forward = AddButton(*bar, "cmdForward", "&Forward");
    bar->addStretch();
    auto* close = AddButton(*bar, "cmdClose", "&Close");
    for (auto* button : {back, forward})
        button->setEnabled(false);
    connect(back, &QPushButton::clicked, page_, &QTextBrowser::backward);
    connect(forward, &QPushButton::clicked, page_, &QTextBrowser::forward);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(page_, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward, &QPushButton::setEnabled);

    auto* halves = new QSplitter;
    halves->addWidget(contents_);
    halves->addWidget(page_);
    halves->setStretchFactor(1, 1);
    halves->setChildrenCollapsible(false);
    auto* column = new QVBoxLayout(this);
    column->addLayout(bar);
    column->addWidget(halves, 1);
    constexpr QSize wanted(960, 680);
    constexpr QSize frame(16, 48);  // of a window, about
    resize(wanted.boundedTo(screen()->availableSize() - frame));
    // The longest title, or where that is too much, two fifths.
    const int contents = std::min(fontMetrics().averageCharWidth() * 44, width() * 2 / 5);
    halves->setSizes({contents, width() - contents});

    connect(contents_, &QTreeWidget::currentItemChanged, page_, [this](const QTreeWidgetItem* item) {
        if (item != nullptr) page_->setSource(item->data(0, kPageRole).toUrl());
    });
    connect(page_, &QTextBrowser::sourceChanged, contents_, [this](const QUrl& page) { ShowTopicOf(page); });
}

void HelpWindow::Open(const std::string& path) {
    auto file = std::make_unique<ChmFile>(path);
    const auto damaged = FileFailure("The help file " + path + " is damaged: its contents cannot be read.");
    const auto sitemap = file->Read(file->FirstNamed(".hhc"));
    if (!sitemap) throw damaged;
    const auto topics = ParseHelpContents(*sitemap);
    if (topics.empty() || !file->Read("/" + topics.front().page)) throw damaged;

    contents_->clear();
    page_->SetFile(file.get());
    file_ = std::move(file);
    AddTopics(topics, contents_->invisibleRootItem());
    contents_->expandAll();
    page_->setSource(UrlOf(topics.front().page));
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    contents_->setFocus();
}

void HelpWindow::AddTopics(const std::vector<HelpTopic>& topics, QTreeWidgetItem* above) {
    for (const auto& topic : topics) {
        auto* item = new QTreeWidgetItem(above, {ToQt(topic.title)});
        item->setData(0, kPageRole, UrlOf(topic.page));
        AddTopics(topic.topics, item);
    }
}

// The contents follow the page, whichever way it was reached.
void HelpWindow::ShowTopicOf(const QUrl& page) {
    const auto wanted = page.adjusted(QUrl::RemoveFragment);
    const QSignalBlocker still(contents_);
    for (QTreeWidgetItemIterator item(contents_); *item != nullptr; ++item)
        if ((*item)->data(0, kPageRole).toUrl() == wanted) contents_->setCurrentItem(*item);
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else if (event->matches(QKeySequence::Back))
        page_->backward();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace rv52
