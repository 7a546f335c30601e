// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/picture.h"

namespace virtual_cameras {

std::size_t bytesPerPixel(PixelForm form) {
    switch (form) {
        case PixelForm::bgr:
            return 3;
        case PixelForm::bgrx:
            return 4;
        case PixelForm::grey:
        case PixelForm::mosaic:
            break;
    }
    return 1;
}

std::size_t pictureBytes(const PictureShape& shape) {
    return bytesPerPixel(shape.form) * static_cast<std::size_t>(shape.width) *
           static_cast<std::size_t>(shape.height);
}

Plane mosaicPlane(BayerOrder order, std::int32_t row, std::int32_t column) {
    constexpr Plane planes[4][4] = {{Plane::green, Plane::blue, Plane::red, Plane::green},
                                    {Plane::green, Plane::red, Plane::blue, Plane::green},
                                    {Plane::blue, Plane::green, Plane::green, Plane::red},
                                    {Plane::red, Plane::green, Plane::green, Plane::blue}};
    return planes[static_cast<std::size_t>(order)][(row & 1) * 2 + (column & 1)];
}

}  // namespace virtual_cameras
