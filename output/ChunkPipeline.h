#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <system_error>
#include <vector>

#include <tl/expected.hpp>

namespace larkspan {

// A piece of a file on its way, starting at offset.
struct Chunk
{
    std::span<std::byte> bytes;
    std::int64_t offset = 0;
};

// Passes a file through a few steps, chunk by chunk and in order: one step reads, the others each see what was read.
// The steps of a large file run at once, each on a thread, so that reading, hashing and writing cost only as much time
// as the slowest of them. The memory is taken once, and is the same for a file of any size.
class ChunkPipeline
{
public:
    static constexpr std::size_t chunkSize = std::size_t{4} * 1024 * 1024; // bytes
    static constexpr std::size_t chunkCount = 4;

    // Fills the buffer from an offset. Less than the whole buffer, or nothing, ends the file.
    using Read =
        std::function<tl::expected<std::size_t, std::error_code>(std::span<std::byte> buffer, std::int64_t offset)>;
    using Step = std::function<std::error_code(const Chunk &chunk)>;

    ChunkPipeline();

    // Runs until the end or the first error. What size promises decides only whether threads are worth it.
    [[nodiscard]] std::error_code run(std::int64_t size, const Read &read, const std::vector<Step> &steps);

private:
    struct Free
    {
        void operator()(std::byte *memory) const;
    };

    std::span<std::byte> buffer(std::size_t index) const;
    std::error_code runInTurn(const Read &read, const std::vector<Step> &steps);
    std::error_code runAtOnce(const Read &read, const std::vector<Step> &steps);

    std::unique_ptr<std::byte, Free> m_memory;
};

} // namespace larkspan
