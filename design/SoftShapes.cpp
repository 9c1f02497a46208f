#include "design/SoftShapes.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGMaterialShader>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr int cornersPerShape = 4;
constexpr int indicesPerShape = 6;

// The layout of the shaders' uniform block, in bytes.
constexpr int matrixOffset = 0;
constexpr int matrixBytes = 64;
constexpr int opacityOffset = matrixOffset + matrixBytes;
constexpr int boxOffset = opacityOffset + 4;
constexpr int uniformBytes = boxOffset + 4;

class SoftShapeShader : public QSGMaterialShader
{
public:
    SoftShapeShader()
    {
        setShaderFileName(VertexStage, u":/qt/qml/Larkspan/Design/softshapes.vert.qsb"_s);
        setShaderFileName(FragmentStage, u":/qt/qml/Larkspan/Design/softshapes.frag.qsb"_s);
    }

    bool updateUniformData(RenderState &state, QSGMaterial *material, QSGMaterial *previous) override
    {
        QByteArray *uniforms = state.uniformData();
        Q_ASSERT(uniforms->size() >= uniformBytes);
        bool hasChanged = false;
        if (state.isMatrixDirty()) {
            const QMatrix4x4 matrix = state.combinedMatrix();
            std::memcpy(uniforms->data() + matrixOffset, matrix.constData(), matrixBytes);
            hasChanged = true;
        }
        if (state.isOpacityDirty()) {
            const float opacity = state.opacity();
            std::memcpy(uniforms->data() + opacityOffset, &opacity, sizeof opacity);
            hasChanged = true;
        }
        const float box = static_cast<SoftShapeMaterial *>(material)->box;
        if (!previous || static_cast<SoftShapeMaterial *>(previous)->box != box) {
            std::memcpy(uniforms->data() + boxOffset, &box, sizeof box);
            hasChanged = true;
        }
        return hasChanged;
    }
};

std::uint8_t byte(double value)
{
    return static_cast<std::uint8_t>(std::lrint(std::clamp(value, 0.0, 255.0)));
}

} // namespace

SoftShapeMaterial::SoftShapeMaterial()
{
    // Without RequiresFullMatrix the renderer transforms the vertices, and the shader's lengths are no longer pixels.
    setFlag(Blending | RequiresFullMatrix);
}

QSGMaterialType *SoftShapeMaterial::type() const
{
    static QSGMaterialType type;
    return &type;
}

QSGMaterialShader *SoftShapeMaterial::createShader(QSGRendererInterface::RenderMode) const
{
    return new SoftShapeShader; // the renderer's
}

int SoftShapeMaterial::compare(const QSGMaterial *other) const
{
    const float otherBox = static_cast<const SoftShapeMaterial *>(other)->box;
    return box < otherBox ? -1 : box > otherBox ? 1 : 0;
}

const QSGGeometry::AttributeSet &SoftShapeNode::attributes()
{
    using Attribute = QSGGeometry::Attribute;
    static const Attribute layout[] = {
        Attribute::create(0, 2, QSGGeometry::FloatType, true),
        Attribute::create(1, 4, QSGGeometry::FloatType),
        Attribute::create(2, 4, QSGGeometry::UnsignedByteType),
    };
    static const QSGGeometry::AttributeSet set{3, sizeof(Vertex), layout};
    return set;
}

SoftShapeNode::SoftShapeNode() : m_shapes(attributes(), 0, 0, QSGGeometry::UnsignedIntType)
{
    m_shapes.setDrawingMode(QSGGeometry::DrawTriangles);
    m_shapes.setVertexDataPattern(QSGGeometry::StreamPattern);
    m_shapes.setIndexDataPattern(QSGGeometry::StaticPattern);
    setGeometry(&m_shapes);
    setMaterial(&m_paint);
}

void SoftShapeNode::reserve(int shapes)
{
    if (shapes <= m_capacity) {
        return;
    }
    m_capacity = shapes;
    m_shapes.allocate(shapes * cornersPerShape, shapes * indicesPerShape);
    m_corners = m_shapes.vertexCount(); // none of which is anything yet
    std::uint32_t *index = m_shapes.indexDataAsUInt();
    for (int shape = 0; shape < shapes; ++shape) {
        const auto first = static_cast<std::uint32_t>(shape * cornersPerShape);
        for (const std::uint32_t corner : {0U, 1U, 2U, 2U, 1U, 3U}) {
            *index++ = first + corner;
        }
    }
}

void SoftShapeNode::begin(int shapes, double pixel, double squareSide, double squareRadius)
{
    reserve(shapes);
    m_next = static_cast<Vertex *>(m_shapes.vertexData());
    m_pixel = pixel;
    m_squareHalf = squareSide / 2.0;
    m_squareRadius = squareRadius;
    m_paint.box = static_cast<float>((m_squareHalf - squareRadius) / pixel);
}

void SoftShapeNode::end()
{
    // Vertices left over from a larger drawing collapse to nothing.
    auto *const first = static_cast<Vertex *>(m_shapes.vertexData());
    const auto corners = static_cast<int>(m_next - first);
    Q_ASSERT(corners <= m_capacity * cornersPerShape);
    if (corners < m_corners) {
        std::fill(m_next, first + m_corners, Vertex{});
    }
    m_corners = corners;
    markDirty(DirtyGeometry | DirtyMaterial);
}

// A stroke of less than a pixel covers no pixel whole: it is drawn as wide as one, and fainter.
SoftShapeNode::Shape SoftShapeNode::stroked(double ring, double halfWidth, const RGBA &color) const
{
    const double width = 2.0 * halfWidth / m_pixel;
    const double peak = std::min(1.0, width);
    const double perPoint = 1.0 / (m_pixel * peak);
    const double opacity = color.a * peak;
    return {static_cast<float>(ring * perPoint),
            static_cast<float>((width / 2.0 + 0.5) / peak),
            static_cast<float>(perPoint),
            {byte(color.r * opacity), byte(color.g * opacity), byte(color.b * opacity), byte(opacity * 255.0)}};
}

void SoftShapeNode::addQuad(QPointF centre, double reach, const Shape &shape)
{
    const auto x = static_cast<float>(centre.x());
    const auto y = static_cast<float>(centre.y());
    const auto r = static_cast<float>(reach);
    const float uv = r * shape.perPoint;
    for (const auto &[right, down] : {std::pair(-1.0f, -1.0f), {1.0f, -1.0f}, {-1.0f, 1.0f}, {1.0f, 1.0f}}) {
        Vertex vertex{x + right * r, y + down * r, right * uv, down * uv, shape.ring, shape.edge, {}};
        std::memcpy(vertex.color, shape.color, sizeof vertex.color);
        *m_next++ = vertex;
    }
}

void SoftShapeNode::addDisc(QPointF centre, double radius, const RGBA &color)
{
    addQuad(centre, radius + m_pixel, stroked(0.0, radius, color));
}

void SoftShapeNode::addRing(QPointF centre, double radius, double width, const RGBA &color)
{
    addQuad(centre, radius + width / 2.0 + m_pixel, stroked(radius, width / 2.0, color));
}

void SoftShapeNode::addGlow(QPointF centre, double innerRadius, double outerRadius, const RGBA &color)
{
    const double fade = outerRadius - innerRadius;
    Shape shape = stroked(0.0, outerRadius, color);
    shape.perPoint = static_cast<float>(1.0 / fade);
    shape.edge = static_cast<float>(outerRadius / fade);
    addQuad(centre, outerRadius, shape);
}

void SoftShapeNode::addSquare(QPointF centre, const RGBA &color)
{
    Shape shape = stroked(0.0, m_squareRadius, color);
    addQuad(centre, m_squareHalf + m_pixel, shape);
}

void SoftShapeNode::addSegment(QPointF from, QPointF to, double width, const RGBA &color)
{
    const QPointF along = to - from;
    const double length = std::hypot(along.x(), along.y());
    const Shape shape = stroked(0.0, width / 2.0, color);
    const double reach = width / 2.0 + m_pixel;
    const QPointF across = length > 0.0 ? QPointF(-along.y(), along.x()) * (reach / length) : QPointF();
    const auto v = static_cast<float>(reach) * shape.perPoint;
    for (const auto &[end, side] : {std::pair(from, -1.0f), {from, 1.0f}, {to, -1.0f}, {to, 1.0f}}) {
        const QPointF corner = end + side * across;
        Vertex vertex{
            static_cast<float>(corner.x()), static_cast<float>(corner.y()), 0.0f, side * v, shape.ring, shape.edge, {}};
        std::memcpy(vertex.color, shape.color, sizeof vertex.color);
        *m_next++ = vertex;
    }
}

bool canDrawSoftShapes(const QQuickWindow &window)
{
    return QSGRendererInterface::isApiRhiBased(window.rendererInterface()->graphicsApi());
}

} // namespace larkspan
