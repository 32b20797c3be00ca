#pragma once
// A document built on a settings store that holds only its header, so every setting is at its
// default; and small helpers to lay out pictures and keys.

#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>

#include "doc/cdoc.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"

class DocFixture : public testing::Test {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        std::string text = "[Parallaxotron]\r\n";
        LoadIniText(text.data(), text.size());
        doc = std::make_unique<CDoc>();
    }

    // The store, headed by the program's name, on these lines (key=value, each ended by CR LF)
    // over quiet pictures: no video-safe colours, no message for a missing picture. The store
    // answers the first line that matches, so the given lines win over those defaults.
    static void LoadSettings(const std::string& lines)
    {
        std::string text =
            "[" + std::string(gEnv.name) + "]\r\n" + lines + "VideoColors=0\r\nShowPicError=0\r\n";
        LoadIniText(text.data(), text.size());
    }

    // A fresh document on LoadSettings(lines).
    void UseSettings(const std::string& lines)
    {
        LoadSettings(lines);
        doc = std::make_unique<CDoc>();
    }

    static KeyStruct KeyAt(int frame, float x = 0.0f, float y = 0.0f)
    {
        KeyStruct key;
        KeyIdentity(key);
        key.Frame = frame;
        key.XPos = x;
        key.YPos = y;
        key.Width = 100.0f;
        return key;
    }

    // Pictures starting at the given frames, each with a file name "pic<n>" to tell them apart.
    void MakePictures(std::initializer_list<long> starts)
    {
        int pic = 0;
        for (long start : starts) {
            doc->SetPicStart(start, pic);
            std::snprintf(doc->picSpec[pic].name, sizeof doc->picSpec[pic].name, "pic%d", pic);
            ++pic;
        }
        doc->picCount = pic;
        doc->dirty = false;
    }

    std::unique_ptr<CDoc> doc;
};
