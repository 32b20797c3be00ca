#pragma once
// Four-character file and creator types, kept beside a file in extended attributes
// ("user.filetype", "user.creator") where the file system takes them. Where it does not, they
// are dropped silently: the types only help other programs recognise the file.

// Stores both codes (4 characters each). False when the file system refused them.
bool SetFileTypeAndCreator(const char* path, const char type[4], const char creator[4]);
// Reads both codes into 4-character arrays. False when the file has none.
bool GetFileTypeAndCreator(const char* path, char type[4], char creator[4]);
