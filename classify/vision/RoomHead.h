#pragma once

#include <filesystem>
#include <span>

#include <tl/expected.hpp>

#include "classify/vision/InferenceSession.h"
#include "classify/vision/VisionRequests.h"

namespace larkspan {

// Tells the place that the frames of a clip show from the features of the networks. Trained by
// classify/vision/models/train_rooms.py, which also writes the file. Loaded once, never changed, read by any number of
// threads.
class RoomHead
{
public:
    // One frame's part in a reading.
    struct Word
    {
        std::vector<float> logits; // for each of identifiers(), then for a frame that shows no place
        FeaturePrintPtr print;     // null if the features say nothing
    };

    struct Reading
    {
        // The evidence for each scene, in the order of identifiers(). A clip that the head is unsure of has a little of
        // it for every place, so that the rules send it to review.
        std::vector<ClassificationObservation> scenes;
        // The weight of objects for the bin of each scene, 0...1: an object of a room that this isn't is no
        // evidence of it.
        std::vector<float> trust;
    };

    // The error tells a file that is missing from one that is damaged and one of another version.
    [[nodiscard]] static tl::expected<RoomHead, ModelError> load(const std::filesystem::path &file);

    // Reads one frame. None if the features are not as many as the head was trained on, or no numbers. The same
    // features give the same word, bit for bit.
    [[nodiscard]] std::optional<Word> hear(std::span<const float> objects, std::span<const float> scene) const;

    // Reads all frames of a clip at once: frames that disagree, or that are each unsure, don't add up to a sure clip.
    // Without frames there is no evidence of anything.
    [[nodiscard]] Reading read(std::span<const Word> frames) const;

    [[nodiscard]] const std::vector<QString> &identifiers() const { return m_identifiers; }

private:
    struct Layer
    {
        std::size_t inputs = 0;
        std::vector<float> weights; // one row of inputs for each output
        std::vector<float> bias;

        [[nodiscard]] std::vector<float> apply(std::span<const float> values) const;
    };

    // Turns probabilities into evidence; fitted with the head.
    struct Caution
    {
        // A likeliest room below its bar is no sure one. By identifier: of a single frame, and of a clip of several.
        std::vector<float> leastSureFrame;
        std::vector<float> leastSureClip;
        float unsureShare = 0.0f; // the part of each probability that an unsure clip keeps as evidence
        float unsureFloor = 0.0f; // its evidence for every place beside
        float noPlace = 0.0f;     // an unsure clip that shows no place as probably as this has no evidence at all
    };

    class File;
    RoomHead() = default;

    [[nodiscard]] std::optional<std::vector<float>> standardised(std::span<const float> objects,
                                                                 std::span<const float> scene) const;

    std::vector<QString> m_identifiers;
    std::vector<bool> m_isShot; // whether the identifier is of a kind of shot rather than of a room
    std::vector<float> m_mean;
    std::vector<float> m_spread;
    Layer m_place; // one more output than the identifiers: a frame that shows no place
    Layer m_print;
    Caution m_caution;
    float m_printLength = 0.0f; // in units of the splitting rules
};

} // namespace larkspan
