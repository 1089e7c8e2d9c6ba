#pragma once

#include "app/HelpContents.h"
#include "app/ui/ChmFile.h"

#include <QTextBrowser>
#include <QWidget>

#include <memory>
#include <string>

class QTreeWidget;
class QTreeWidgetItem;

namespace rv52 {

// A page of the help. It knows no other source than the help file: what a page refers to outside of it is
// neither fetched nor opened.
class HelpPage : public QTextBrowser {
    Q_OBJECT

 public:
    explicit HelpPage(QWidget* parent);

    void SetFile(const ChmFile* file) { file_ = file; }
    QVariant loadResource(int type, const QUrl& name) override;

 protected:
    void mousePressEvent(QMouseEvent* event) override;
    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
    const ChmFile* file_ = nullptr;
};

// The viewer of the compiled help: the table of contents at left, the page at right.
class HelpWindow : public QWidget {
    Q_OBJECT

 public:
    explicit HelpWindow(QWidget* owner);

    // Opens the file at its table of contents and shows the window, or brings it to the front. Throws
    // Failure when the file is missing or damaged; the window is then as it was.
    void Open(const std::string& path);

 protected:
    void keyPressEvent(QKeyEvent* event) override;

 private:
    void AddTopics(const std::vector<HelpTopic>& topics, QTreeWidgetItem* above);
    void ShowTopicOf(const QUrl& page);

    QTreeWidget* contents_;
    HelpPage* page_;
    std::unique_ptr<ChmFile> file_;
};

}  // namespace rv52
