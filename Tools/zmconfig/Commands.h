#pragma once

#include <string>
#include <vector>

class ZmConfiguration;

struct Arguments {
    std::string command, file;
    std::vector<std::string> rest;
    int indent = 2;
};

/// Each function runs one command and returns the exit code. Throws Failure if nothing was done.
int Check(const Arguments& arguments);
int Get(const Arguments& arguments);
int List(const Arguments& arguments);
int Set(const Arguments& arguments);
int Remove(const Arguments& arguments);
int Format(const Arguments& arguments);
int Import(const Arguments& arguments);

/// Reads a configuration. Throws Failure with the first mistake and its line.
void Load(ZmConfiguration& tree, const std::string& path);

/// The entries of a text as lines "path = value", in their order; to compare configurations.
std::string ListingOf(const ZmConfiguration& tree);
