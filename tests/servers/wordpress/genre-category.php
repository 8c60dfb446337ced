<?php
add_action('save_post', function ($post) {
    $found = array_filter(array_map('get_cat_ID', wp_get_post_tags($post, ['fields' => 'names'])));
    if ($found) wp_set_post_categories($post, $found);
});
