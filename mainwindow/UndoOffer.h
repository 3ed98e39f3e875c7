#pragma once

#include <QObject>
#include <QTimer>
#include <qqmlregistration.h>

#include <chrono>

/// For some seconds after something was done, the offer to take it back, or to do what comes next.
class UndoOffer : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window's actions make them.")
    Q_PROPERTY(bool isOffered READ isOffered NOTIFY isOfferedChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(QString actionText READ actionText NOTIFY textChanged)

public:
    static constexpr std::chrono::milliseconds defaultOfferTime{8000};

    explicit UndoOffer(std::chrono::milliseconds offerTime, QObject *parent = nullptr);

    [[nodiscard]] bool isOffered() const { return m_isOffered; }
    /// What was done, in the current language; it stays while the offer fades away.
    [[nodiscard]] virtual QString text() const = 0;

    /// What the offer does.
    [[nodiscard]] virtual QString actionText() const;

    /// Whether that takes something back, as the keys of undo do.
    [[nodiscard]] virtual bool takesBack() const { return true; }

    Q_INVOKABLE void undo();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void isOfferedChanged();
    void textChanged();

protected:
    /// Begins the offer, or its time anew.
    void begin();
    virtual void takeBack() = 0;
    virtual void forget() = 0; ///< the offer is over, taken or not

private:
    void setIsOffered(bool isOffered);

    bool m_isOffered = false;
    QTimer m_end;
};
