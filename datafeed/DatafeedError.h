// The one exception the datafeed library throws. Its message always begins with the
// name of the file concerned ("instruments.json: instruments[2].MinMove: missing").
#pragma once

#include <stdexcept>
#include <string>

namespace datafeed {

class DatafeedError : public std::runtime_error {
public:
    explicit DatafeedError(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace datafeed
