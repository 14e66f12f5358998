// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// The picture that kel-render makes of a file, made by Mapnik: its own reading through GDAL, its own projection and
// rasterizer, 1920x1080 pixels, an antialiased line of 10 pixels with round ends and joins, fitted.
//
//     peer_mapnik <folder of Mapnik's input plug-ins> <file> <layer> <picture.png>

#include <mapnik/agg_renderer.hpp>
#include <mapnik/datasource_cache.hpp>
#include <mapnik/feature_type_style.hpp>
#include <mapnik/image.hpp>
#include <mapnik/image_util.hpp>
#include <mapnik/layer.hpp>
#include <mapnik/map.hpp>
#include <mapnik/rule.hpp>
#include <mapnik/symbolizer.hpp>

#include <cstdio>
#include <exception>
#include <string>
#include <utility>

namespace
{

constexpr int WIDTH = 1920;
constexpr int HEIGHT = 1080;
constexpr double LINE_WIDTH = 10.0;
constexpr double PADDING = 1.2;
const char *const DEGREES = "+proj=longlat +ellps=WGS84 +datum=WGS84 +no_defs";
const char *const MERCATOR = "+proj=merc +a=6378137 +b=6378137 +lat_ts=0.0 +lon_0=0.0 +x_0=0.0 +y_0=0.0 +k=1.0 "
                             "+units=m +nadgrids=@null +wktext +no_defs +over";

mapnik::feature_type_style lineStyle()
{
    mapnik::line_symbolizer line;
    mapnik::put(line, mapnik::keys::stroke, mapnik::color(0, 0, 255, 200));
    mapnik::put(line, mapnik::keys::stroke_width, LINE_WIDTH);
    mapnik::put(line, mapnik::keys::stroke_linecap, mapnik::ROUND_CAP);
    mapnik::put(line, mapnik::keys::stroke_linejoin, mapnik::ROUND_JOIN);
    mapnik::rule rule;
    rule.append(std::move(line));
    mapnik::feature_type_style style;
    style.add_rule(std::move(rule));
    return style;
}

void draw(const std::string &file, const std::string &layerName, const std::string &picture)
{
    mapnik::parameters parameters;
    parameters["type"] = std::string("ogr");
    parameters["file"] = file;
    parameters["layer"] = layerName;

    mapnik::layer layer("track", DEGREES);
    layer.set_datasource(mapnik::datasource_cache::instance().create(parameters));
    layer.add_style("line");
    mapnik::Map map(WIDTH, HEIGHT, MERCATOR);
    map.insert_style("line", lineStyle());
    map.add_layer(layer);
    map.zoom_all();
    map.zoom(PADDING);

    mapnik::image_rgba8 image(WIDTH, HEIGHT);
    mapnik::agg_renderer<mapnik::image_rgba8> renderer(map, image);
    renderer.apply();
    mapnik::save_to_file(image, picture, "png");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 5) {
        std::fputs("usage: peer_mapnik <plug-ins> <file> <layer> <picture.png>\n", stderr);
        return 2;
    }
    try {
        mapnik::datasource_cache::instance().register_datasources(argv[1]);
        draw(argv[2], argv[3], argv[4]);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
