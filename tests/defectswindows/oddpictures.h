// Picture files as they come from elsewhere.
#pragma once

#include <QImage>
#include <string>

std::string Encoded(const QImage& image, const char* format);
// Says that the camera was held by its right side: column 0 is the upper edge.
std::string WithQuarterTurn(const std::string& jpeg);
// Claims that size, whatever follows.
std::string WithClaimedSize(const std::string& jpeg, int width, int height);
