#pragma once

#include <filesystem>
#include <span>

#include <tl/expected.hpp>

#include "classify/InferenceSession.h"
#include "classify/VisionRequests.h"

namespace larkspan {

// What the object detector's pooled features say of the place: trained by classify/models/train_rooms.py, which also
// writes the file. Loaded once, never changed, read by any number of threads.
class RoomHead
{
public:
    struct Reading
    {
        // What each scene is evidence of, in the order of identifiers(). A frame that the head is unsure of speaks
        // softly for every place, so that the rules send it to review.
        std::vector<ClassificationObservation> scenes;
        // How far objects may speak for the bin of each scene, 0...1: an object of a room that this isn't is no
        // evidence of it.
        std::vector<float> trust;
        // Null if the features say nothing.
        FeaturePrintPtr print;
    };

    // The error tells a file that is missing from one that is damaged and one of another version.
    [[nodiscard]] static tl::expected<RoomHead, ModelError> load(const std::filesystem::path &file);

    // What the features of a frame, and those of a closer look at its middle, say of the place; the print is of the
    // frame alone. Nothing if either are not as many as the head was trained on, or no numbers. The same features give
    // the same reading, bit for bit.
    [[nodiscard]] std::optional<Reading> read(std::span<const float> features, std::span<const float> closer) const;

    [[nodiscard]] const std::vector<QString> &identifiers() const { return m_identifiers; }

private:
    struct Layer
    {
        std::size_t inputs = 0;
        std::vector<float> weights; // one row of inputs for each output
        std::vector<float> bias;

        [[nodiscard]] std::vector<float> apply(std::span<const float> values) const;
    };

    // What turns a probability into evidence; fitted with the head.
    struct Caution
    {
        float leastSure = 0.0f;   // a likeliest place below this is no sure one
        float unsureShare = 0.0f; // what an unsure frame keeps of each probability
        float unsureFloor = 0.0f; // and what it says of every place beside
    };

    class File;
    RoomHead() = default;

    [[nodiscard]] std::optional<std::vector<float>> standardised(std::span<const float> features) const;
    // For each identifier, and that the frame shows nothing.
    [[nodiscard]] std::vector<float> logits(std::span<const float> inputs) const;

    std::vector<QString> m_identifiers;
    std::vector<float> m_mean;
    std::vector<float> m_spread;
    Layer m_hidden;
    Layer m_out; // one more than the identifiers: a frame that shows nothing
    Layer m_print;
    Caution m_caution;
    float m_printLength = 0.0f; // in units of the splitting rules
};

} // namespace larkspan
