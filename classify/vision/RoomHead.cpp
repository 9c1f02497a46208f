#include "classify/vision/RoomHead.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include <QtCore/QCryptographicHash>
#include <QtCore/QFloat16>

#include "classify/vision/ModelFile.h"
#include "core/bins/RoomLabel.h"

namespace larkspan {

namespace {

static_assert(std::endian::native == std::endian::little, "the head's file is read as it lies");

constexpr std::string_view magic = "LKROOMS\n";
constexpr std::uint32_t knownVersion = 3;  // 1 and 2 were read from other features
constexpr std::size_t checksumLength = 32; // SHA-256 of all before it
// Features are clipped to so many spreads; what lies beyond says no more.
constexpr float farthestFeature = 5.0f;
// More than any head of ours has; a size beyond it is a damaged file's.
constexpr std::uint32_t mostUnits = 1u << 14;

tl::unexpected<ModelError> failure(ModelError::Reason reason, const std::filesystem::path &file, std::string detail)
{
    return tl::unexpected(ModelError{reason, file, std::move(detail)});
}

// Returns what is between the version and the checksum of a head's file, if both are as they should be.
tl::expected<std::span<const char>, ModelError> checkedContent(const std::vector<char> &bytes,
                                                               const std::filesystem::path &file)
{
    using Reason = ModelError::Reason;
    if (bytes.size() < magic.size() + sizeof(knownVersion) + checksumLength) {
        return failure(Reason::Broken, file, "it is too short");
    }
    if (std::string_view(bytes.data(), magic.size()) != magic) {
        return failure(Reason::Broken, file, "it is no head for rooms");
    }
    // The version goes first: another one may be laid out, and summed, in another way.
    std::uint32_t version = 0;
    std::memcpy(&version, bytes.data() + magic.size(), sizeof(version));
    if (version != knownVersion) {
        return failure(Reason::OtherModel, file,
                       "it is of version " + std::to_string(version) + ", not " + std::to_string(knownVersion));
    }
    const auto summed = std::span(bytes).first(bytes.size() - checksumLength);
    const auto sum = QCryptographicHash::hash(QByteArrayView(summed.data(), static_cast<qsizetype>(summed.size())),
                                              QCryptographicHash::Sha256);
    if (!std::ranges::equal(sum, std::span(bytes).last(checksumLength))) {
        return failure(Reason::Broken, file, "its checksum is wrong: it is damaged or cut off");
    }
    return summed.subspan(magic.size() + sizeof(knownVersion));
}

std::vector<float> softmax(std::vector<float> values)
{
    const float highest = *std::ranges::max_element(values);
    float sum = 0.0f;
    for (float &value : values) {
        value = std::exp(value - highest);
        sum += value;
    }
    for (float &value : values) {
        value /= sum;
    }
    return values;
}

} // namespace

// The bytes of a head's file, read from front to back.
class RoomHead::File
{
public:
    explicit File(std::span<const char> bytes) : m_rest(bytes) {}

    [[nodiscard]] bool isSound() const { return m_sound; }
    [[nodiscard]] bool isAtEnd() const { return m_rest.empty(); }

    template <typename Number>
    std::vector<Number> numbers(std::size_t count)
    {
        std::vector<Number> result;
        if (const auto bytes = take(count * sizeof(Number)); !bytes.empty()) {
            result.resize(count);
            std::memcpy(result.data(), bytes.data(), bytes.size());
        }
        return result;
    }

    std::uint32_t size()
    {
        const auto value = numbers<std::uint32_t>(1);
        m_sound = m_sound && !value.empty() && value.front() > 0 && value.front() <= mostUnits;
        return m_sound ? value.front() : 0;
    }

    QString text(std::size_t length)
    {
        const auto bytes = take(length);
        return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }

    // Weights in half precision, then the bias in single.
    Layer layer(std::size_t inputs, std::size_t outputs)
    {
        const auto halves = numbers<qfloat16>(inputs * outputs);
        Layer layer{inputs, {halves.begin(), halves.end()}, {}};
        layer.bias = numbers<float>(outputs);
        return layer;
    }

private:
    std::span<const char> take(std::size_t length)
    {
        m_sound = m_sound && length <= m_rest.size();
        if (!m_sound) {
            return {};
        }
        const auto taken = m_rest.first(length);
        m_rest = m_rest.subspan(length);
        return taken;
    }

    std::span<const char> m_rest;
    bool m_sound = true;
};

tl::expected<RoomHead, ModelError> RoomHead::load(const std::filesystem::path &file)
{
    const auto bytes = readModelFile(file);
    if (!bytes) {
        return failure(ModelError::Reason::Missing, file, "there is no such file, or it can't be read");
    }
    const auto content = checkedContent(*bytes, file);
    if (!content) {
        return tl::unexpected(content.error());
    }

    File data(*content);
    RoomHead head;
    const auto inputs = data.size();
    const auto print = data.size();
    for (const auto &name : data.text(data.size()).split(u'\n', Qt::SkipEmptyParts)) {
        head.m_identifiers.push_back(name);
    }
    head.m_mean = data.numbers<float>(inputs);
    head.m_spread = data.numbers<float>(inputs);
    head.m_place = data.layer(inputs, head.m_identifiers.size() + 1);
    head.m_print = data.layer(inputs, print);
    head.m_caution.leastSureFrame = data.numbers<float>(head.m_identifiers.size());
    head.m_caution.leastSureClip = data.numbers<float>(head.m_identifiers.size());
    const auto rest = data.numbers<float>(4);
    if (!data.isSound() || !data.isAtEnd() || head.m_identifiers.empty()) {
        return failure(ModelError::Reason::Broken, file, "its parts don't fit together");
    }
    head.m_caution.unsureShare = rest[0];
    head.m_caution.unsureFloor = rest[1];
    head.m_caution.noPlace = rest[2];
    head.m_printLength = rest[3];
    for (const auto &name : head.m_identifiers) {
        const auto bins = RoomLabel::binsByIdentifier().find(name);
        head.m_isShot.push_back(bins != RoomLabel::binsByIdentifier().end() &&
                                RoomLabel::exclusiveBins().contains(bins->second.front()));
    }
    return head;
}

// In plain order, so that the sums are the same everywhere.
std::vector<float> RoomHead::Layer::apply(std::span<const float> values) const
{
    std::vector<float> result = bias;
    for (std::size_t row = 0; row < result.size(); ++row) {
        // Four sums that don't wait for one another.
        std::array<float, 4> sums{};
        const float *weight = weights.data() + row * inputs;
        std::size_t i = 0;
        for (; i + 4 <= inputs; i += 4) {
            for (std::size_t lane = 0; lane < 4; ++lane) {
                sums[lane] += weight[i + lane] * values[i + lane];
            }
        }
        for (; i < inputs; ++i) {
            sums[0] += weight[i] * values[i];
        }
        result[row] += (sums[0] + sums[1]) + (sums[2] + sums[3]);
    }
    return result;
}

std::optional<std::vector<float>> RoomHead::standardised(std::span<const float> objects,
                                                         std::span<const float> scene) const
{
    if (objects.size() + scene.size() != m_mean.size()) {
        return std::nullopt;
    }
    std::vector<float> inputs(objects.begin(), objects.end());
    inputs.insert(inputs.end(), scene.begin(), scene.end());
    if (!std::ranges::all_of(inputs, [](float f) { return std::isfinite(f); })) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        // Square roots tame the features' long tails.
        const float root = std::copysign(std::sqrt(std::abs(inputs[i])), inputs[i]);
        inputs[i] = std::clamp((root - m_mean[i]) / m_spread[i], -farthestFeature, farthestFeature);
    }
    return inputs;
}

std::optional<RoomHead::Word> RoomHead::hear(std::span<const float> objects, std::span<const float> scene) const
{
    const auto inputs = standardised(objects, scene);
    if (!inputs) {
        return std::nullopt;
    }
    Word word{.logits = m_place.apply(*inputs), .print = nullptr};
    auto print = m_print.apply(*inputs);
    double squares = 0.0;
    for (const float value : print) {
        squares += static_cast<double>(value) * value;
    }
    if (squares > 0.0) {
        for (float &value : print) {
            value *= static_cast<float>(m_printLength / std::sqrt(squares));
        }
        word.print = std::make_shared<const FeaturePrint>(std::move(print));
    }
    return word;
}

RoomHead::Reading RoomHead::read(std::span<const Word> frames) const
{
    if (frames.empty()) {
        return {};
    }
    std::vector<float> said(m_identifiers.size() + 1, 0.0f);
    for (const auto &word : frames) {
        for (std::size_t i = 0; i < said.size(); ++i) {
            said[i] += word.logits[i] / static_cast<float>(frames.size());
        }
    }
    const auto probabilities = softmax(std::move(said));
    std::size_t likeliest = 0;
    float highest = 0.0f;
    for (std::size_t i = 0; i < m_identifiers.size(); ++i) {
        if (!m_isShot[i] && probabilities[i] > highest) {
            likeliest = i;
            highest = probabilities[i];
        }
    }
    const auto &bars = frames.size() > 1 ? m_caution.leastSureClip : m_caution.leastSureFrame;
    const bool isSure = highest >= bars[likeliest];
    const bool showsPlace = probabilities.back() < m_caution.noPlace;

    Reading reading;
    for (std::size_t i = 0; i < m_identifiers.size(); ++i) {
        const float doubtful = probabilities[i] * m_caution.unsureShare + m_caution.unsureFloor;
        const float evidence = isSure ? probabilities[i] : showsPlace ? doubtful : 0.0f;
        reading.scenes.push_back({m_identifiers[i], evidence});
        reading.trust.push_back(isSure ? probabilities[i] : 0.0f);
    }
    return reading;
}

} // namespace larkspan
