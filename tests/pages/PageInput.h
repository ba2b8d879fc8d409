// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QRectF>
#include <QtCore/QVariant>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QTest>

// What a user's hand does on a page: scroll a long page until a control shows, then click it.
namespace PageInput {

// Scrolls the scroll view `page` until `item` lies inside it; no-op for other pages.
inline void scrollTo(QQuickItem* page, QQuickItem* item)
{
    auto* flickable = page ? page->property("contentItem").value<QQuickItem*>() : nullptr;
    if (!flickable || !flickable->inherits("QQuickFlickable"))
        return;
    const QRectF inWindow = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    const QRectF pageRect = page->mapRectToScene(QRectF(0, 0, page->width(), page->height()));
    qreal y = flickable->property("contentY").toReal();
    if (inWindow.bottom() > pageRect.bottom())
        y += inWindow.bottom() - pageRect.bottom();
    else if (inWindow.top() < pageRect.top())
        y -= pageRect.top() - inWindow.top();
    flickable->setProperty("contentY", y);
}

// A left click in the middle of `item`, once it is scrolled into view; false if it is not
// inside the window even then.
inline bool click(QQuickWindow* window, QQuickItem* page, QQuickItem* item)
{
    scrollTo(page, item);
    const QPoint at = item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    if (!QRect(QPoint(0, 0), window->size()).contains(at))
        return false;
    QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, at);
    return true;
}

} // namespace PageInput
