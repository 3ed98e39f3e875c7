#pragma once

#include <QObject>
#include <QString>

#include <optional>

/// What a toolbar, a menu or a shortcut asks an editor to do.
class EditorCommand
{
    Q_GADGET

public:
    enum class Kind {
        heading, ///< payload: the level, 1 to 3
        link,    ///< payload: the address
        paragraph,
        bold,
        italic,
        underline,
        strikethrough,
        bulletList,
        numberedList,
        checkbox,
        divider,
        undo,
        redo,
    };
    Q_ENUM(Kind)

    EditorCommand() = default;
    // cppcheck-suppress noExplicitConstructor ; most kinds are all there is to say
    EditorCommand(Kind kind)
        : m_kind(kind)
    {
    }

    [[nodiscard]] static EditorCommand heading(int level);
    [[nodiscard]] static EditorCommand link(const QString &url);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] bool operator==(const EditorCommand &) const = default;

    /// The one call of a page function that carries the command out.
    [[nodiscard]] QString script() const;

private:
    Kind m_kind = Kind::paragraph;
    int m_level = 0;
    QString m_url;
};

/// "window.name(argument, value);": an absent argument is written null, an absent value not at all.
[[nodiscard]] QString pageCall(QStringView name, const std::optional<QString> &argument,
                               const std::optional<QString> &value = {});
