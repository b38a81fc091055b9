#include "agent/bindings/bindings.h"
#include "agent/reflection/bind.h"

#include <QLine>
#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QSize>

Q_DECLARE_METATYPE(QMargins)

namespace Torvix::Agent {

template <class P, class N>
static void bindPoint(Registry& registry)
{
    Bind<P>(registry)
        .value()
        .property("x", &P::x, &P::setX)
        .property("y", &P::y, &P::setY)
        .method("isNull", &P::isNull)
        .method("manhattanLength", &P::manhattanLength)
        .template constructor<>()
        .template constructor<N, N>("x, y");
}

template <class S, class N>
static void bindSize(Registry& registry)
{
    Bind<S>(registry)
        .value()
        .property("width", &S::width, &S::setWidth)
        .property("height", &S::height, &S::setHeight)
        .method("isEmpty", &S::isEmpty)
        .method("isNull", &S::isNull)
        .method("isValid", &S::isValid)
        .method("expandedTo", &S::expandedTo, "other")
        .method("boundedTo", &S::boundedTo, "other")
        .method("transposed", &S::transposed)
        .template constructor<>()
        .template constructor<N, N>("width, height");
}

template <class R, class P, class S, class N>
static void bindRect(Registry& registry)
{
    Bind<R>(registry)
        .value()
        .property("x", &R::x, &R::setX)
        .property("y", &R::y, &R::setY)
        .property("width", &R::width, &R::setWidth)
        .property("height", &R::height, &R::setHeight)
        .property("left", &R::left)
        .property("top", &R::top)
        .property("right", &R::right)
        .property("bottom", &R::bottom)
        .method("center", &R::center)
        .method("topLeft", &R::topLeft)
        .method("topRight", &R::topRight)
        .method("bottomLeft", &R::bottomLeft)
        .method("bottomRight", &R::bottomRight)
        .method("size", &R::size)
        .method("isEmpty", &R::isEmpty)
        .method("isNull", &R::isNull)
        .method("isValid", &R::isValid)
        .method("adjusted", &R::adjusted, "x1, y1, x2, y2")
        .method("translated", qOverload<N, N>(&R::translated), "dx, dy")
        .method("united", &R::united, "other")
        .method("intersected", &R::intersected, "other")
        .method("intersects", &R::intersects, "other")
        .extension(
            "contains", +[](R& rect, const P& point) { return rect.contains(point); }, "point")
        .extension(
            "contains", +[](R& rect, const R& other) { return rect.contains(other); }, "other")
        .extension(
            "contains", +[](R& rect, N x, N y) { return rect.contains(x, y); }, "x, y")
        .template constructor<>()
        .template constructor<N, N, N, N>("x, y, width, height")
        .template constructor<const P&, const S&>("topLeft, size");
}

void bindGeometry(Registry& registry)
{
    bindPoint<QPoint, int>(registry);
    bindPoint<QPointF, qreal>(registry);
    bindSize<QSize, int>(registry);
    bindSize<QSizeF, qreal>(registry);
    bindRect<QRect, QPoint, QSize, int>(registry);
    bindRect<QRectF, QPointF, QSizeF, qreal>(registry);
    Bind<QMargins>(registry)
        .value()
        .property("left", &QMargins::left, &QMargins::setLeft)
        .property("top", &QMargins::top, &QMargins::setTop)
        .property("right", &QMargins::right, &QMargins::setRight)
        .property("bottom", &QMargins::bottom, &QMargins::setBottom)
        .constructor<>()
        .constructor<int, int, int, int>("left, top, right, bottom");
}

} // namespace Torvix::Agent
