#pragma once
// The seam through which tests answer the program's modal questions (message boxes, the string
// box, the codec dialog, the file dialogs): a queue of answers given in advance and a record of
// every question asked, however it was answered.
//
// Each question takes the oldest queued answer instead of showing anything. The record keeps the
// last kScriptRecordLimit questions only, so a long-running program does not grow it without end;
// CountRecorded still counts every one since the last Clear. Every call locks, so a question asked
// from another thread cannot tear the queue or the record.

#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

constexpr size_t kScriptRecordLimit = 256;

template <typename Answer, typename Question>
class ScriptedAnswers {
public:
    ScriptedAnswers() = default;
    ScriptedAnswers(const ScriptedAnswers&) = delete;
    ScriptedAnswers& operator=(const ScriptedAnswers&) = delete;

    // Queues the answer of a question still to come.
    void Push(Answer answer)
    {
        std::lock_guard<std::mutex> lock(mutex_);
        answers_.push_back(std::move(answer));
    }

    // Takes the oldest queued answer into `answer`; false, leaving it alone, when none is queued.
    bool Take(Answer* answer)
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (answers_.empty())
            return false;
        *answer = std::move(answers_.front());
        answers_.pop_front();
        return true;
    }

    int CountAnswers() const
    {
        std::lock_guard<std::mutex> lock(mutex_);
        return static_cast<int>(answers_.size());
    }

    // Adds a question to the record, forgetting the oldest beyond the limit.
    void Record(Question question)
    {
        std::lock_guard<std::mutex> lock(mutex_);
        recorded_.push_back(std::move(question));
        while (recorded_.size() > kScriptRecordLimit)
            recorded_.pop_front();
        ++recordedCount_;
    }

    // Hands back the recorded questions, oldest first, and forgets them.
    std::vector<Question> TakeRecord()
    {
        std::lock_guard<std::mutex> lock(mutex_);
        std::vector<Question> questions(std::make_move_iterator(recorded_.begin()),
                                        std::make_move_iterator(recorded_.end()));
        recorded_.clear();
        return questions;
    }

    // The latest recorded question, or a default one when the record is empty.
    Question LastRecorded() const
    {
        std::lock_guard<std::mutex> lock(mutex_);
        return recorded_.empty() ? Question() : recorded_.back();
    }

    // The questions recorded since the last Clear, those the record has forgotten included.
    int CountRecorded() const
    {
        std::lock_guard<std::mutex> lock(mutex_);
        return recordedCount_;
    }

    // Forgets the queued answers and the record.
    void Clear()
    {
        std::lock_guard<std::mutex> lock(mutex_);
        answers_.clear();
        recorded_.clear();
        recordedCount_ = 0;
    }

private:
    mutable std::mutex mutex_;
    std::deque<Answer> answers_;
    std::deque<Question> recorded_;
    int recordedCount_ = 0;
};
