#include "examples/node_values.h"

namespace fabscan {

// clang-format off

const FieldTable kSwitchInfo = {
    //                                EDR     HDR     NDR     XDR
    {"LinearFDBCap",                {0xC000, 0xC000, 0xC000, 0xC000}},  // every unicast LID
    {"LinearFDBTop",                {177,    177,    177,    177}},
    {"MCastFDBCap",                 {0x1000, 0x2000, 0x3FFF, 0x3FFF}},
    {"MCastFDBTop",                 {0xC004, 0xC004, 0xC004, 0xC011}},
    {"OptimizedSLVLMapping",        {1,      1,      3,      3}},
    {"LifeTimeValue",               {18,     18,     18,     18}},
    {"DefMCastNotPriPort",          {255,    255,    255,    255}},
    {"PartEnfCap",                  {8,      16,     32,     32}},
    // No two of these rows are the same, so that a test notices two swapped flags.
    {"InbEnfCap",                   {1,      1,      1,      1}},
    {"OutbEnfCap",                  {1,      1,      1,      0}},
    {"FilterRawInbCap",             {1,      0,      1,      0}},
    {"FilterRawOutbCap",            {1,      0,      0,      0}},
    {"ENP0",                        {0,      1,      1,      1}},
};

const FieldTable kExtendedSwitchInfo = {
    {"turbo_path_enable",           {0,      0,      1,      1}},
    {"turbo_path_cap",              {0,      1,      1,      1}},
    {"end_to_end_timescale",        {4,      4,      5,      6}},
    {"req_delay",                   {0,      100,    200,    250}},
    {"req_delay_cap",               {0,      9,      10,     11}},
    {"req_trig_window",             {0,      64,     128,    256}},
    {"req_trig_window_cap",         {0,      6,      7,      8}},
    {"set_trig_th",                 {0,      800,    900,    950}},
    {"set_trig_th_cap",             {0,      12,     13,     14}},
    {"rst_trig_th",                 {0,      300,    400,    450}},
    {"rst_trig_th_cap",             {0,      15,     16,     17}},
};

const FieldTable kSwitchExtendedNodeInfo = {
    {"sl2vl_cap",                   {1,      1,      3,      7}},
    {"sl2vl_act",                   {1,      1,      1,      3}},
    {"num_pcie",                    {0,      0,      1,      2}},
    {"num_oob",                     {0,      2,      2,      4}},
    {"node_type_extended",          {0,      5,      6,      6}},
    {"AnycastLidCap",               {0,      8,      15,     16}},
    {"AnycastLIDTop",               {0,      0,      0,      1}},
    {"asic_max_planes",             {1,      1,      1,      8}},
    {"link_auto_retrain_en",        {0,      0,      1,      1}},
    {"multiplane_asymmetry_en",     {0,      0,      0,      1}},
};

const FieldTable kEndNodeExtendedNodeInfo = {
    {"sl2vl_cap",                   {1,      1,      1,      3}},
    {"sl2vl_act",                   {1,      1,      1,      1}},
    {"num_pcie",                    {1,      1,      2,      4}},
    {"num_oob",                     {0,      0,      0,      1}},
    {"node_type_extended",          {2,      2,      3,      3}},
    {"asic_max_planes",             {1,      1,      1,      4}},
    {"link_auto_retrain_en",        {0,      0,      1,      1}},
};

const FieldTable kPrivateLftInfo = {
    {"Active_Mode",                              {1,  1,  2,  3}},
    {"ModeCap",                                  {2,  3,  4,  4}},
    {"NumPLFTs",                                 {2,  2,  8,  16}},
    {"NoFallback",                               {0,  1,  1,  1}},
    {"Description_Mode[0].NumOfLFTables",        {1,  1,  1,  1}},
    {"Description_Mode[0].LFTableSize",          {24, 48, 48, 48}},
    {"Description_Mode[1].NumOfLFTables",        {2,  2,  2,  2}},
    {"Description_Mode[1].LFTableSize",          {12, 24, 24, 24}},
    {"Description_Mode[2].NumOfLFTables",        {0,  4,  8,  8}},
    {"Description_Mode[2].LFTableSize",          {0,  12, 6,  12}},
    {"Description_Mode[3].NumOfLFTables",        {0,  0,  16, 16}},
    {"Description_Mode[3].LFTableSize",          {0,  0,  3,  6}},
};

const FieldTable kAdaptiveRoutingInfo = {
    //                                EDR     HDR     NDR     XDR
    {"e",                           {1,      1,      1,      1}},
    {"fr_enabled",                  {0,      1,      0,      0}},
    {"rn_xmit_enabled",             {0,      0,      1,      0}},
    {"sub_grps_active",             {0,      1,      3,      3}},
    {"group_cap",                   {0x400,  0x800,  0x1000, 0x2000}},
    {"group_top",                   {11,     11,     12,     14}},
    {"group_table_cap",             {2,      4,      8,      12}},
    {"string_width_cap",            {5,      6,      7,      7}},
    {"direction_num_sup",           {0,      2,      3,      6}},
    {"sub_grps_supported",          {1,      3,      5,      4}},
    {"ar_version_cap",              {1,      1,      2,      3}},
    {"rn_version_cap",              {0,      1,      1,      2}},
    {"enable_by_sl_mask",           {0x0003, 0x0003, 0x000F, 0x00FF}},
    {"ageing_time_value",           {30,     30,     40,     50}},
    {"by_sl_en",                    {1,      1,      0,      1}},
    {"enable_by_sl_mask_hbf",       {0,      0x0001, 0x0003, 0x000F}},
    {"by_sl_hbf_en",                {0,      1,      1,      1}},
    {"pfrn_enabled",                {0,      0,      0,      1}},
    // No two rows but the last are the same, so that a test notices two swapped flags.
    {"dyn_cap_calc_sup",            {1,      1,      1,      1}},
    {"by_transp_cap",               {1,      1,      1,      0}},
    {"is_ar_trials_supported",      {1,      1,      0,      0}},
    {"glb_groups",                  {1,      0,      0,      0}},
    {"is4_mode",                    {1,      0,      1,      0}},
    {"group_table_copy_sup",        {1,      0,      1,      1}},
    {"by_sl_cap",                   {1,      1,      0,      1}},
    {"is_arn_sup",                  {1,      0,      0,      1}},
    {"is_hbf_supported",            {0,      1,      1,      1}},
    {"is_bth_dqp_hash_supported",   {0,      1,      1,      0}},
    {"is_dceth_hash_supported",     {0,      1,      0,      1}},
    {"is_fr_sup",                   {0,      1,      0,      0}},
    {"is_frn_sup",                  {0,      0,      1,      0}},
    {"is_symmetric_hash_supported", {0,      0,      1,      1}},
    {"is_whbf_supported",           {0,      0,      0,      1}},
    {"is_pfrn_supported",           {0,      0,      1,      1}},
};

const FieldTable kRouterInfo = {
    {"CapabilityMask",                     {0x03,   0x07,   0x1F,   0x3F}},
    {"NextHopTableCap",                    {0x1000, 0x2000, 0x4000, 0x8000}},
    {"NextHopTableTop",                    {1,      1,      1,      1}},
    {"AdjacentSiteLocalSubnetsTableCap",   {4,      8,      16,     32}},
    {"AdjacentSiteLocalSubnetsTableTop",   {1,      1,      1,      1}},
    {"ar_group_to_router_lid_table_cap",   {0x200,  0x400,  0x800,  0x800}},
    {"cap_supported_subnets",              {2,      4,      8,      16}},
    {"cap_router_lid",                     {0x100,  0x200,  0x300,  0x400}},
    {"global_router_lid_base",             {0xB000, 0xB000, 0xB000, 0xB000}},
    {"global_router_lid_top",              {0xB0FF, 0xB1FF, 0xB2FF, 0xB3FF}},
    {"local_router_lid_base",              {0xA000, 0xA000, 0xA000, 0xA000}},
    {"local_router_lid_top",               {0xA00F, 0xA01F, 0xA02F, 0xA03F}},
    {"max_ar_group_id",                    {0x1FF,  0x3FF,  0x7FF,  0x7FF}},
};

const FieldTable kSwitchCongestionInfo = {
    {"ver0",                        {1,      1,      1,      1}},
    {"ver1",                        {0,      0,      1,      1}},
    {"CC_Capability_Mask",          {0x03,   0x07,   0x1F,   0x800000000000001F}},
};

const FieldTable kEndNodeCongestionInfo = {
    {"ver0",                        {1,      1,      1,      1}},
    {"ver1",                        {0,      0,      1,      1}},
    {"CC_Capability_Mask",          {0x20,   0x60,   0xE0,   0x80000000000000E0}},
};

const FieldTable kSwitchCongestionSettings = {
    {"aqs_time",                    {10,     10,     12,     14}},
    {"aqs_weight",                  {2,      2,      3,      3}},
    {"en",                          {0,      1,      1,      1}},
    {"cap_total_buffer_size",       {0x4000, 0x8000, 0x10000, 0x18000}},
    {"cap_cc_profile_step_size",    {16,     16,     8,      4}},
};

// clang-format on

}  // namespace fabscan
