#include "platform/standin/LocaleTable.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <iterator>

namespace {

// The rows are ordered by primary language. The first row of a primary language is its usual sublanguage. The first row
// with a language's name, such as "de", has the usual country of that language. The other rows are ordered by their id.
constexpr eq::standin::Language languages[] = {
    {"ar_SA", 1256, 0x0401, '.'},
    {"ar_IQ", 1256, 0x0801, '.'},
    {"ar_EG", 1256, 0x0C01, '.'},
    {"ar_LY", 1256, 0x1001, ','},
    {"ar_DZ", 1256, 0x1401, ','},
    {"ar_MA", 1256, 0x1801, ','},
    {"ar_TN", 1256, 0x1C01, ','},
    {"ar_OM", 1256, 0x2001, '.'},
    {"ar_YE", 1256, 0x2401, '.'},
    {"ar_SY", 1256, 0x2801, '.'},
    {"ar_JO", 1256, 0x2C01, '.'},
    {"ar_LB", 1256, 0x3001, ','},
    {"ar_KW", 1256, 0x3401, '.'},
    {"ar_AE", 1256, 0x3801, '.'},
    {"ar_BH", 1256, 0x3C01, '.'},
    {"ar_QA", 1256, 0x4001, '.'},
    {"bg_BG", 1251, 0x0402, ','},
    {"ca_ES", 1252, 0x0403, ','},
    {"ca_ES@valencia", 1252, 0x0803, ','},
    {"zh_CN", 936, 0x0804, '.'},
    {"zh_TW", 950, 0x0404, '.'},
    {"zh_HK", 950, 0x0C04, '.'},
    {"zh_SG", 936, 0x1004, '.'},
    {"zh_MO", 950, 0x1404, '.'},
    {"cs_CZ", 1250, 0x0405, ','},
    {"da_DK", 1252, 0x0406, ','},
    {"de_DE", 1252, 0x0407, ','},
    {"de_CH", 1252, 0x0807, '.'},
    {"de_AT", 1252, 0x0C07, ','},
    {"de_LU", 1252, 0x1007, ','},
    {"de_LI", 1252, 0x1407, '.'},
    {"el_GR", 1253, 0x0408, ','},
    {"en_US", 1252, 0x0409, '.'},
    {"en_GB", 1252, 0x0809, '.'},
    {"en_AU", 1252, 0x0C09, '.'},
    {"en_CA", 1252, 0x1009, '.'},
    {"en_NZ", 1252, 0x1409, '.'},
    {"en_IE", 1252, 0x1809, '.'},
    {"en_ZA", 1252, 0x1C09, ','},
    {"en_JM", 1252, 0x2009, '.'},
    {"en_BZ", 1252, 0x2809, '.'},
    {"en_TT", 1252, 0x2C09, '.'},
    {"en_ZW", 1252, 0x3009, '.'},
    {"en_PH", 1252, 0x3409, '.'},
    {"en_ID", 1252, 0x3809, '.'},
    {"en_HK", 1252, 0x3C09, '.'},
    {"en_IN", 1252, 0x4009, '.'},
    {"en_MY", 1252, 0x4409, '.'},
    {"en_SG", 1252, 0x4809, '.'},
    {"en_AE", 0, 0x4C09, '.'},
    {"es_ES", 1252, 0x0C0A, ','},
    {"es_ES@tradicional", 1252, 0x040A, ','},
    {"es_MX", 1252, 0x080A, '.'},
    {"es_GT", 1252, 0x100A, '.'},
    {"es_CR", 1252, 0x140A, ','},
    {"es_PA", 1252, 0x180A, '.'},
    {"es_DO", 1252, 0x1C0A, '.'},
    {"es_VE", 1252, 0x200A, ','},
    {"es_CO", 1252, 0x240A, ','},
    {"es_PE", 1252, 0x280A, '.'},
    {"es_AR", 1252, 0x2C0A, ','},
    {"es_EC", 1252, 0x300A, ','},
    {"es_CL", 1252, 0x340A, ','},
    {"es_UY", 1252, 0x380A, ','},
    {"es_PY", 1252, 0x3C0A, ','},
    {"es_BO", 1252, 0x400A, ','},
    {"es_SV", 1252, 0x440A, '.'},
    {"es_HN", 1252, 0x480A, '.'},
    {"es_NI", 1252, 0x4C0A, '.'},
    {"es_PR", 1252, 0x500A, '.'},
    {"es_US", 1252, 0x540A, '.'},
    {"es_CU", 1252, 0x5C0A, '.'},
    {"fi_FI", 1252, 0x040B, ','},
    {"fr_FR", 1252, 0x040C, ','},
    {"fr_BE", 1252, 0x080C, ','},
    {"fr_CA", 1252, 0x0C0C, ','},
    {"fr_CH", 1252, 0x100C, ','},
    {"fr_LU", 1252, 0x140C, ','},
    {"fr_MC", 1252, 0x180C, ','},
    {"fr_RE", 1252, 0x200C, ','},
    {"fr_CD", 1252, 0x240C, ','},
    {"fr_SN", 1252, 0x280C, ','},
    {"fr_CM", 1252, 0x2C0C, ','},
    {"fr_CI", 1252, 0x300C, ','},
    {"fr_ML", 1252, 0x340C, ','},
    {"fr_MA", 1252, 0x380C, ','},
    {"fr_HT", 1252, 0x3C0C, ','},
    {"he_IL", 1255, 0x040D, '.'},
    {"hu_HU", 1250, 0x040E, ','},
    {"is_IS", 1252, 0x040F, ','},
    {"it_IT", 1252, 0x0410, ','},
    {"it_CH", 1252, 0x0810, '.'},
    {"ja_JP", 932, 0x0411, '.'},
    {"ko_KR", 949, 0x0412, '.'},
    {"nl_NL", 1252, 0x0413, ','},
    {"nl_BE", 1252, 0x0813, ','},
    {"nb_NO", 1252, 0x0414, ','},
    {"no_NO", 1252, 0x0414, ','},
    {"nn_NO", 1252, 0x0814, ','},
    {"pl_PL", 1250, 0x0415, ','},
    {"pt_BR", 1252, 0x0416, ','},
    {"pt_PT", 1252, 0x0816, ','},
    {"rm_CH", 1252, 0x0417, '.'},
    {"ro_RO", 1250, 0x0418, ','},
    {"ro_MD", 1250, 0x0818, ','},
    {"ru_RU", 1251, 0x0419, ','},
    {"ru_MD", 1251, 0x0819, ','},
    {"hr_HR", 1250, 0x041A, ','},
    {"sr_RS", 1251, 0x281A, ','},
    {"sr_CS@latin", 1250, 0x081A, ','},
    {"sr_CS", 1251, 0x0C1A, ','},
    {"hr_BA", 1250, 0x101A, ','},
    {"bs_BA", 1250, 0x141A, ','},
    {"sr_BA@latin", 1250, 0x181A, ','},
    {"sr_BA", 1251, 0x1C1A, ','},
    {"bs_BA@cyrillic", 1251, 0x201A, ','},
    {"sr_RS@latin", 1250, 0x241A, ','},
    {"sr_ME@latin", 1250, 0x2C1A, ','},
    {"sr_ME", 1251, 0x301A, ','},
    {"sk_SK", 1250, 0x041B, ','},
    {"sq_AL", 1250, 0x041C, ','},
    {"sv_SE", 1252, 0x041D, ','},
    {"sv_FI", 1252, 0x081D, ','},
    {"th_TH", 874, 0x041E, '.'},
    {"tr_TR", 1254, 0x041F, ','},
    {"ur_PK", 1256, 0x0420, '.'},
    {"ur_IN", 1256, 0x0820, '.'},
    {"id_ID", 1252, 0x0421, ','},
    {"uk_UA", 1251, 0x0422, ','},
    {"be_BY", 1251, 0x0423, ','},
    {"sl_SI", 1250, 0x0424, ','},
    {"et_EE", 1257, 0x0425, ','},
    {"lv_LV", 1257, 0x0426, ','},
    {"lt_LT", 1257, 0x0427, ','},
    {"tg_TJ", 1251, 0x0428, ','},
    {"fa_IR", 1256, 0x0429, '.'},
    {"vi_VN", 1258, 0x042A, ','},
    {"hy_AM", 0, 0x042B, ','},
    {"az_AZ", 1254, 0x042C, ','},
    {"az_AZ@cyrillic", 1251, 0x082C, ','},
    {"eu_ES", 1252, 0x042D, ','},
    {"hsb_DE", 1252, 0x042E, ','},
    {"dsb_DE", 1252, 0x082E, ','},
    {"mk_MK", 1251, 0x042F, ','},
    {"st_ZA", 0, 0x0430, ','},
    {"ts_ZA", 0, 0x0431, ','},
    {"tn_ZA", 1252, 0x0432, '.'},
    {"tn_BW", 1252, 0x0832, '.'},
    {"ve_ZA", 0, 0x0433, ','},
    {"xh_ZA", 1252, 0x0434, '.'},
    {"zu_ZA", 1252, 0x0435, '.'},
    {"af_ZA", 1252, 0x0436, ','},
    {"ka_GE", 0, 0x0437, ','},
    {"fo_FO", 1252, 0x0438, ','},
    {"hi_IN", 0, 0x0439, '.'},
    {"mt_MT", 0, 0x043A, '.'},
    {"se_NO", 1252, 0x043B, ','},
    {"se_SE", 1252, 0x083B, ','},
    {"se_FI", 1252, 0x0C3B, ','},
    {"smj_NO", 1252, 0x103B, ','},
    {"smj_SE", 1252, 0x143B, ','},
    {"sma_NO", 1252, 0x183B, ','},
    {"sma_SE", 1252, 0x1C3B, ','},
    {"sms_FI", 1252, 0x203B, ','},
    {"smn_FI", 1252, 0x243B, ','},
    {"ga_IE", 1252, 0x083C, '.'},
    {"ms_MY", 1252, 0x043E, '.'},
    {"ms_BN", 1252, 0x083E, ','},
    {"kk_KZ", 0, 0x043F, ','},
    {"ky_KG", 1251, 0x0440, ','},
    {"sw_KE", 1252, 0x0441, '.'},
    {"tk_TM", 1250, 0x0442, ','},
    {"uz_UZ", 1254, 0x0443, ','},
    {"uz_UZ@cyrillic", 1251, 0x0843, ','},
    {"tt_RU", 1251, 0x0444, ','},
    {"bn_BD", 0, 0x0845, '.'},
    {"bn_IN", 0, 0x0445, '.'},
    {"pa_IN", 0, 0x0446, '.'},
    {"pa_PK", 1256, 0x0846, '.'},
    {"gu_IN", 0, 0x0447, '.'},
    {"or_IN", 0, 0x0448, '.'},
    {"ta_IN", 0, 0x0449, '.'},
    {"ta_LK", 0, 0x0849, '.'},
    {"te_IN", 0, 0x044A, '.'},
    {"kn_IN", 0, 0x044B, '.'},
    {"ml_IN", 0, 0x044C, '.'},
    {"as_IN", 0, 0x044D, '.'},
    {"mr_IN", 0, 0x044E, '.'},
    {"sa_IN", 0, 0x044F, '.'},
    {"mn_MN", 1251, 0x0450, '.'},
    {"mn_CN", 0, 0x0850, '.'},
    {"mn_MN@mongolian", 0, 0x0C50, ','},
    {"bo_CN", 0, 0x0451, '.'},
    {"dz_BT", 0, 0x0C51, '.'},
    {"cy_GB", 1252, 0x0452, '.'},
    {"km_KH", 0, 0x0453, ','},
    {"lo_LA", 0, 0x0454, ','},
    {"my_MM", 0, 0x0455, '.'},
    {"gl_ES", 1252, 0x0456, ','},
    {"kok_IN", 0, 0x0457, '.'},
    {"mni_IN", 0, 0x0458, '.'},
    {"sd_PK", 1256, 0x0859, '.'},
    {"sd_IN", 0, 0x0459, '.'},
    {"syr_SY", 0, 0x045A, '.'},
    {"si_LK", 0, 0x045B, '.'},
    {"chr_US", 0, 0x045C, '.'},
    {"iu_CA@latin", 1252, 0x085D, '.'},
    {"iu_CA", 0, 0x045D, '.'},
    {"am_ET", 0, 0x045E, '.'},
    {"tzm_DZ", 1252, 0x085F, ','},
    {"ks_IN", 0, 0x0460, '.'},
    {"ks_IN@devanagari", 0, 0x0860, '.'},
    {"ne_NP", 0, 0x0461, '.'},
    {"ne_IN", 0, 0x0861, '.'},
    {"fy_NL", 1252, 0x0462, ','},
    {"ps_AF", 0, 0x0463, ','},
    {"fil_PH", 1252, 0x0464, '.'},
    {"dv_MV", 0, 0x0465, '.'},
    {"bin_NG", 1252, 0x0466, '.'},
    {"ff_SN", 1252, 0x0867, ','},
    {"ff_NG", 1252, 0x0467, ','},
    {"ha_NG", 1252, 0x0468, '.'},
    {"yo_NG", 1252, 0x046A, '.'},
    {"quz_BO", 1252, 0x046B, ','},
    {"quz_EC", 1252, 0x086B, '.'},
    {"quz_PE", 1252, 0x0C6B, '.'},
    {"nso_ZA", 1252, 0x046C, '.'},
    {"ba_RU", 1251, 0x046D, '.'},
    {"lb_LU", 1252, 0x046E, ','},
    {"kl_GL", 1252, 0x046F, ','},
    {"ig_NG", 1252, 0x0470, '.'},
    {"kr_NG", 1252, 0x0471, '.'},
    {"om_ET", 0, 0x0472, '.'},
    {"ti_ER", 0, 0x0873, '.'},
    {"ti_ET", 0, 0x0473, '.'},
    {"gn_PY", 1252, 0x0474, ','},
    {"haw_US", 1252, 0x0475, '.'},
    {"la_VA", 1252, 0x0476, ','},
    {"so_SO", 0, 0x0477, '.'},
    {"ii_CN", 0, 0x0478, '.'},
    {"arn_CL", 1252, 0x047A, '.'},
    {"moh_CA", 1252, 0x047C, '.'},
    {"br_FR", 1252, 0x047E, ','},
    {"ug_CN", 1256, 0x0480, '.'},
    {"mi_NZ", 0, 0x0481, '.'},
    {"oc_FR", 1252, 0x0482, ','},
    {"co_FR", 1252, 0x0483, ','},
    {"gsw_FR", 1252, 0x0484, '.'},
    {"sah_RU", 1251, 0x0485, ','},
    {"quc_GT", 1252, 0x0486, '.'},
    {"rw_RW", 1252, 0x0487, ','},
    {"wo_SN", 1252, 0x0488, ','},
    {"prs_AF", 1256, 0x048C, '.'},
    {"gd_GB", 1252, 0x0491, '.'},
    {"ku_IQ", 1256, 0x0492, '.'},
};

constexpr WORD primaryOf(WORD id) noexcept {
    return id & 0x3FF;
}

constexpr std::string_view upTo(std::string_view text, std::string_view ends) noexcept {
    return text.substr(0, text.find_first_of(ends));
}

constexpr std::string_view nameOf(const eq::standin::Language& row) noexcept {
    return upTo(row.locale, "_");
}

// A row in a wrong place would hide another row, or would become the usual one.
static_assert([] {
    bool isUsual = true; // whether the earlier row is the first one with its language's name
    for (std::size_t i = 1; i < std::size(languages); ++i) {
        const auto& before = languages[i - 1];
        const auto& row = languages[i];
        if (primaryOf(before.id) > primaryOf(row.id)) return false;
        if (primaryOf(before.id) == primaryOf(row.id) && before.id > row.id && !isUsual) return false;
        isUsual = nameOf(before) != nameOf(row);
    }
    return true;
}());

template <typename Predicate>
const eq::standin::Language* firstRow(Predicate fits) noexcept {
    const auto* const found = std::find_if(std::begin(languages), std::end(languages), fits);
    return found == std::end(languages) ? nullptr : found;
}

std::string_view environmentLocale(const char* categoryVariable) noexcept {
    for (const char* const variable : {"LC_ALL", categoryVariable, "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value && *value != '\0') return value;
    }
    return {};
}

} // namespace

namespace eq::standin {

const Language* findLanguage(WORD id) noexcept {
    const bool primaryAlone = primaryOf(id) == id;
    return firstRow([=](const Language& row) { return (primaryAlone ? primaryOf(row.id) : row.id) == id; });
}

const Language* environmentLanguage(const char* categoryVariable) noexcept {
    const std::string_view locale = upTo(environmentLocale(categoryVariable), ".@");
    const Language* const exact = firstRow([=](const Language& row) { return row.locale == locale; });
    if (exact) return exact;
    const std::string_view language = upTo(locale, "_");
    return firstRow([=](const Language& row) { return nameOf(row) == language; });
}

} // namespace eq::standin
