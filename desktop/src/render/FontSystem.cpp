#include "render/FontSystem.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-fontmap.h>

#include <cstdio>
#include <cstdlib>

#include "JTK/desktop/render/Font.h"
#include "JTK/services/Resources.h"

namespace jtk::desktop {

namespace fs = std::filesystem;

namespace {

constexpr const char* configFileName = "fonts/fonts.conf";
constexpr const char* fontFolder = "/usr/share/fonts/truetype/dejavu";

// A configuration that knows only the DejaVu folder: used when the project's
// file is missing or broken, so drawing still works (with a message).
FcConfig* fallbackConfig() {
    FcConfig* config = FcConfigCreate();
    FcConfigAppFontAddDir(config, reinterpret_cast<const FcChar8*>(fontFolder));
    return config;
}

FcConfig* loadConfig() {
    auto folder = resourcesFolder();
    if (!folder) {
        std::fprintf(stderr, "JTK desktop: no %s found (set JTK_RESOURCES_DIR); using the fonts in %s\n",
                     configFileName, fontFolder);
        return fallbackConfig();
    }
    std::string file = (*folder / configFileName).string();
    FcConfig* config = FcConfigCreate();
    // A sysroot from the environment would move every path of the file.
    FcConfigSetSysRoot(config, nullptr);
    if (!FcConfigParseAndLoad(config, reinterpret_cast<const FcChar8*>(file.c_str()), FcTrue) ||
        !FcConfigBuildFonts(config)) {
        std::fprintf(stderr, "JTK desktop: cannot load the font configuration %s; using the fonts in %s\n",
                     file.c_str(), fontFolder);
        FcConfigDestroy(config);
        return fallbackConfig();
    }
    return config;
}

PangoContext* makeContext() {
    FcConfig* config = loadConfig();
    PangoFontMap* fontMap = pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT);
    pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(fontMap), config);
    FcConfigDestroy(config);  // the font map holds its own reference
    pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fontMap), 72);

    PangoContext* context = pango_font_map_create_context(fontMap);
    g_object_unref(fontMap);  // the context holds it
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_subpixel_order(options, CAIRO_SUBPIXEL_ORDER_DEFAULT);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context, options);
    cairo_font_options_destroy(options);
    pango_cairo_context_set_resolution(context, 72);
    pango_context_set_language(context, pango_language_from_string("en"));
    pango_context_set_base_dir(context, PANGO_DIRECTION_LTR);
    return context;
}

}  // namespace

std::optional<fs::path> resourcesFolder() { return services::resourceFolderHolding(configFileName); }

PangoContext* fontContext() {
    static PangoContext* context = makeContext();  // kept until the process ends
    return context;
}

PangoFontDescription* newFontDescription(const Font& font) {
    PangoFontDescription* description = pango_font_description_new();
    pango_font_description_set_family(description, font.family.c_str());
    pango_font_description_set_absolute_size(description, font.size * PANGO_SCALE);
    pango_font_description_set_weight(description, font.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(description, PANGO_STYLE_NORMAL);
    return description;
}

}  // namespace jtk::desktop
