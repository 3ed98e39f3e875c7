#pragma once

#include "editor/EditorCommand.h"
#include "editor/EditorController.h"
#include "editor/EditorWebView.h"
#include "editor/RichTextEditor.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QUuid>
#include <qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>

/// Owns the conversation with one editor page: when content is pushed into it, when its HTML is
/// accepted as the note's, and to which note an incoming change belongs.
class RichTextEditorCoordinator : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(EditorWebView *webView READ webView WRITE setWebView NOTIFY webViewChanged)
    Q_PROPERTY(EditorController *controller READ controller WRITE setController NOTIFY controllerChanged)
    Q_PROPERTY(RichTextEditor value READ value WRITE update NOTIFY valueChanged)
    Q_PROPERTY(bool isCaretAwaited READ isCaretAwaited NOTIFY isCaretAwaitedChanged)
    Q_PROPERTY(QUrl hoveredLink READ hoveredLink NOTIFY hoveredLinkChanged)

public:
    explicit RichTextEditorCoordinator(QObject *parent = nullptr);
    ~RichTextEditorCoordinator() override;

    [[nodiscard]] EditorWebView *webView() const { return m_webView; }
    /// Builds the page in the view; done once per view.
    void setWebView(EditorWebView *webView);
    [[nodiscard]] EditorController *controller() const { return m_controller; }
    void setController(EditorController *controller);
    [[nodiscard]] const RichTextEditor &value() const { return m_value; }
    void update(const RichTextEditor &value);

    /// The note asked for is to have the keyboard, and its page has not got its caret yet.
    [[nodiscard]] bool isCaretAwaited() const { return m_isCaretAwaited; }

    /// Gives the page the focus and runs the command there, 0.05 s from now: a click on a toolbar
    /// has taken the focus away, and the page restores its selection only while focused.
    void run(const EditorCommand &command);

    /// Asks the page for the address of the link at its caret, as written: "" without one, or without
    /// a page to ask. Answered exactly once, also when the page or the coordinator goes away.
    void requestLinkAtCaret(std::function<void(const QString &address)> answer);

    /// Asks the page for what it has not reported yet, and lets go of the debt once that is taken:
    /// at once without a page that shows a note, and when the page goes away. A window that closes
    /// right after a key lives until then. The view may be in the middle of telling the answer, so
    /// that whoever ends with the debt must not take the view down in the same breath.
    void handOver(const std::shared_ptr<void> &debt);

    /// For a view whose window has grown from a very low height, and which may stay blank.
    Q_INVOKABLE void layOutAgain();

    /// The link under the pointer; empty when there is none, or none that would be opened.
    [[nodiscard]] const QUrl &hoveredLink() const { return m_hoveredLink; }

    /// Where pictures that come into the page are kept; that of the shared profile unless set.
    void setImagesDirectory(const QString &directory) { m_imagesDirectory = directory; }

    /// The note whose content is in the page.
    [[nodiscard]] std::optional<QUuid> loadedNoteID() const { return m_loadedNoteID; }

Q_SIGNALS:
    /// The page's HTML was accepted as the new HTML of the note.
    void change(const QUuid &noteID, const QString &html);
    /// The page now holds the note's content.
    void shown(const QUuid &noteID);
    /// The user asked for the link to be opened, and it may be.
    void linkActivated(const QUrl &url);
    void hoveredLinkChanged();
    void webViewChanged();
    void controllerChanged();
    void valueChanged();
    void isCaretAwaitedChanged();

private:
    void loadPage();
    void finishLoading();
    void forgetPage();
    void recover();
    void sync();
    void refreshIfNotTyping();
    void refresh();
    /// Takes what the page holds, then goes on; the page may go first, and then nothing is done.
    void read(const QString &question, std::function<void()> next);
    /// Takes what the page holds that many times, one after the other, and holds the debt meanwhile.
    void collect(int rounds, const std::shared_ptr<void> &debt);
    void showFirst();
    void switchNote();
    void show(const QUuid &noteID, const QString &html, double fontSize);
    void focusPage();
    void setCaretAwaited(bool isCaretAwaited);
    [[nodiscard]] bool isOtherNoteWanted() const;
    void applyFontSize(double size);
    void receive(const QString &handler, const QString &body);
    void makeUpFor(const QString &handler);
    void receiveChange(const QString &body);
    void receiveFormatState(const QString &body);
    void receiveLink(const QString &address);
    void receivePicture(const QString &body);
    void setHoveredLink(const QUrl &url);
    void take(const QUuid &noteID, const QString &html);
    void learn(const QUuid &noteID, const QString &html);
    void flush();
    void runIfFocused(const EditorCommand &command);

    QPointer<EditorWebView> m_webView;
    QPointer<EditorController> m_controller;
    std::optional<QString> m_imagesDirectory;
    QUrl m_hoveredLink;
    RichTextEditor m_value;                ///< what the view currently asks for
    std::optional<QUuid> m_loadedNoteID;
    QString m_documentHTML;                ///< what the host believes the page holds
    QString m_storedHTML;                  ///< what the host is known to hold for the loaded note
    int m_contentRevision = 0;             ///< counts what was put into pages
    bool m_pageLoaded = false;
    bool m_isShowing = false;              ///< content was sent, and the page has not reported since
    bool m_isSyncing = false;              ///< a switch waits for the old note's HTML
    bool m_isCaretAwaited = false;
    double m_lastFontSize = -1.0;
    bool m_takesFocusWhenShown = true;     ///< false while a page that had no focus is recovered
    QTimer m_reload;
    QElapsedTimer m_sinceLoss;
    int m_lossesInARow = 0;
};
