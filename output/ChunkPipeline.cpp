#include "output/ChunkPipeline.h"

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <new>
#include <optional>
#include <thread>

namespace larkspan {

namespace {

// Direct reading and writing wants whole pages.
constexpr std::size_t alignment = 4096;

// Counts the chunks that each station has done. Station 0 is the reading, the others are the steps in their order. Each
// follows the one before; the reading is ahead of the last step by no more than the buffers.
class Progress
{
public:
    explicit Progress(std::size_t stations) : m_done(stations, 0) {}

    // Waits for chunk `index` to be there for a station; false when there is none to come.
    bool awaitTurn(std::size_t station, std::size_t index)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_error || isEnd(index) || isReady(station, index); });
        return !m_error && !isEnd(index);
    }

    void advance(std::size_t station)
    {
        const std::scoped_lock lock(m_mutex);
        ++m_done[station];
        m_changed.notify_all();
    }

    void end(std::size_t chunks)
    {
        const std::scoped_lock lock(m_mutex);
        m_chunks = chunks;
        m_changed.notify_all();
    }

    // The first error stands.
    void fail(std::error_code error)
    {
        const std::scoped_lock lock(m_mutex);
        m_error = m_error ? m_error : error;
        m_changed.notify_all();
    }

    std::error_code error()
    {
        const std::scoped_lock lock(m_mutex);
        return m_error;
    }

private:
    bool isEnd(std::size_t index) const { return m_chunks && index >= *m_chunks; }
    bool isReady(std::size_t station, std::size_t index) const
    {
        return station == 0 ? index < m_done.back() + ChunkPipeline::chunkCount : index < m_done[station - 1];
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::size_t> m_done; // chunks that a station is through with
    std::optional<std::size_t> m_chunks;
    std::error_code m_error;
};

} // namespace

void ChunkPipeline::Free::operator()(std::byte *memory) const
{
    std::free(memory);
}

ChunkPipeline::ChunkPipeline()
    : m_memory(static_cast<std::byte *>(std::aligned_alloc(alignment, chunkSize * chunkCount)))
{
    if (!m_memory) {
        throw std::bad_alloc();
    }
}

std::span<std::byte> ChunkPipeline::buffer(std::size_t index) const
{
    return {m_memory.get() + index % chunkCount * chunkSize, chunkSize};
}

std::error_code ChunkPipeline::run(std::int64_t size, const Read &read, const std::vector<Step> &steps)
{
    return size <= static_cast<std::int64_t>(chunkSize) || steps.empty() ? runInTurn(read, steps)
                                                                         : runAtOnce(read, steps);
}

std::error_code ChunkPipeline::runInTurn(const Read &read, const std::vector<Step> &steps)
{
    for (std::int64_t offset = 0;; offset += chunkSize) {
        const auto count = read(buffer(0), offset);
        if (!count) {
            return count.error();
        }
        const Chunk chunk{buffer(0).first(*count), offset};
        for (const Step &step : steps) {
            if (*count == 0) {
                break;
            }
            if (const std::error_code error = step(chunk)) {
                return error;
            }
        }
        if (*count < chunkSize) {
            return {};
        }
    }
}

std::error_code ChunkPipeline::runAtOnce(const Read &read, const std::vector<Step> &steps)
{
    Progress progress(1 + steps.size());
    std::array<Chunk, chunkCount> chunks;
    {
        std::vector<std::jthread> threads;
        for (std::size_t station = 1; station <= steps.size(); ++station) {
            threads.emplace_back([&, station] {
                for (std::size_t i = 0; progress.awaitTurn(station, i); ++i) {
                    if (const std::error_code error = steps[station - 1](chunks[i % chunkCount])) {
                        return progress.fail(error);
                    }
                    progress.advance(station);
                }
            });
        }
        for (std::size_t i = 0; progress.awaitTurn(0, i); ++i) {
            const auto offset = static_cast<std::int64_t>(i * chunkSize);
            const auto count = read(buffer(i), offset);
            if (!count) {
                progress.fail(count.error());
                break;
            }
            if (*count > 0) {
                chunks[i % chunkCount] = {buffer(i).first(*count), offset};
                progress.advance(0);
            }
            if (*count < chunkSize) {
                progress.end(*count > 0 ? i + 1 : i);
            }
        }
    }
    return progress.error();
}

} // namespace larkspan
