#pragma once

#include "tests/e2e/WindowOnScreen.h"

#include <QString>

/// A sticky window on the screen: its controls are where its size puts them.
class StickyOnScreen : public WindowOnScreen
{
public:
    enum Control { Colour = 3, Pin = 2, Fold = 1, Close = 0 }; ///< from the right edge

    StickyOnScreen(const XWitness &server, xcb_window_t window)
        : WindowOnScreen(server, window), m_server(&server)
    {
    }

    /// As frameText() of the settings' file has it.
    [[nodiscard]] QString frame() const;
    void clickControl(Control control) const { click(place(control)); }
    void pointAtControl(Control control) const { point(place(control)); }
    [[nodiscard]] QPoint place(Control control) const;
    /// Of the free strip above the page, and of a capsule.
    [[nodiscard]] static QPoint grip() { return {60, 20}; }
    [[nodiscard]] static QPoint page() { return {100, 180}; }
    /// The page is drawn there, and not a blank card.
    [[nodiscard]] bool showsText() const;

private:
    const XWitness *m_server;
};

/// "x,y wxh" in points, y upwards from the bottom of the screen.
[[nodiscard]] QString frameText(double x, double y, double width, double height);
