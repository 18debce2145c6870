#pragma once

// The functions of each library that this backend calls, by their own names: F(name) for each.

// clang-format off

#define TARV_XCB_FUNCTIONS(F) \
    F(xcb_change_property) F(xcb_change_window_attributes) F(xcb_close_font) F(xcb_configure_window) \
    F(xcb_connect) F(xcb_connection_has_error) F(xcb_convert_selection) F(xcb_create_colormap) F(xcb_create_gc) \
    F(xcb_create_glyph_cursor) F(xcb_create_window_checked) F(xcb_depth_next) F(xcb_depth_visuals_iterator) \
    F(xcb_destroy_window) F(xcb_discard_reply) F(xcb_disconnect) F(xcb_flush) F(xcb_format_next) F(xcb_free_colormap) \
    F(xcb_free_cursor) F(xcb_free_gc) F(xcb_generate_id) F(xcb_get_extension_data) F(xcb_get_file_descriptor) \
    F(xcb_get_input_focus) F(xcb_get_input_focus_reply) F(xcb_get_maximum_request_length) F(xcb_get_property) \
    F(xcb_get_property_reply) F(xcb_get_property_value) F(xcb_get_property_value_length) \
    F(xcb_get_selection_owner) F(xcb_get_selection_owner_reply) F(xcb_get_setup) F(xcb_grab_pointer) \
    F(xcb_grab_pointer_reply) F(xcb_intern_atom) F(xcb_intern_atom_reply) F(xcb_map_window) F(xcb_open_font) \
    F(xcb_poll_for_event) F(xcb_put_image) F(xcb_query_pointer) F(xcb_query_pointer_reply) F(xcb_query_tree) \
    F(xcb_query_tree_reply) F(xcb_request_check) F(xcb_screen_allowed_depths_iterator) F(xcb_screen_next) \
    F(xcb_send_event) F(xcb_set_input_focus) F(xcb_set_selection_owner) F(xcb_setup_pixmap_formats_iterator) \
    F(xcb_setup_roots_iterator) F(xcb_translate_coordinates) F(xcb_translate_coordinates_reply) \
    F(xcb_ungrab_pointer) F(xcb_unmap_window) F(xcb_visualtype_next)

#define TARV_SHM_FUNCTIONS(F) \
    F(xcb_shm_attach_checked) F(xcb_shm_detach) F(xcb_shm_id) F(xcb_shm_put_image) F(xcb_shm_query_version) \
    F(xcb_shm_query_version_reply)

#define TARV_RANDR_FUNCTIONS(F) \
    F(xcb_randr_get_monitors) F(xcb_randr_get_monitors_monitors_iterator) F(xcb_randr_get_monitors_reply) \
    F(xcb_randr_id) F(xcb_randr_monitor_info_next) F(xcb_randr_query_version) F(xcb_randr_query_version_reply)

#define TARV_XCB_XKB_FUNCTIONS(F) \
    F(xcb_xkb_per_client_flags) F(xcb_xkb_select_events)

#define TARV_XKB_FUNCTIONS(F) \
    F(xkb_compose_state_feed) F(xkb_compose_state_get_status) F(xkb_compose_state_get_utf8) \
    F(xkb_compose_state_new) F(xkb_compose_state_reset) F(xkb_compose_state_unref) \
    F(xkb_compose_table_new_from_locale) F(xkb_compose_table_unref) F(xkb_context_new) F(xkb_context_unref) \
    F(xkb_keymap_key_get_syms_by_level) F(xkb_keymap_new_from_names) F(xkb_keymap_num_layouts_for_key) \
    F(xkb_keymap_unref) F(xkb_keysym_to_utf32) F(xkb_state_key_get_layout) F(xkb_state_key_get_one_sym) \
    F(xkb_state_mod_name_is_active) F(xkb_state_new) F(xkb_state_unref) F(xkb_state_update_mask)

#define TARV_XKB_X11_FUNCTIONS(F) \
    F(xkb_x11_get_core_keyboard_device_id) F(xkb_x11_keymap_new_from_device) F(xkb_x11_setup_xkb_extension)

#define TARV_ALL_X11_FUNCTIONS(F) \
    TARV_XCB_FUNCTIONS(F) TARV_SHM_FUNCTIONS(F) TARV_RANDR_FUNCTIONS(F) TARV_XCB_XKB_FUNCTIONS(F) \
    TARV_XKB_FUNCTIONS(F) TARV_XKB_X11_FUNCTIONS(F)

// clang-format on
