<?php
// Settings of a WordPress that lives for one run of the tests and reaches nothing outside.
define('DB_NAME', 'wp');
define('DB_USER', 'wp');
define('DB_PASSWORD', 'wp');
define('DB_HOST', 'localhost:' . getenv('WORDPRESS_SOCKET'));
define('DB_CHARSET', 'utf8mb4');
define('DB_COLLATE', '');
$table_prefix = 'wp_';
foreach (['AUTH', 'SECURE_AUTH', 'LOGGED_IN', 'NONCE'] as $name) {
    define($name . '_KEY', "key of $name");
    define($name . '_SALT', "salt of $name");
}
define('WP_HOME', getenv('WORDPRESS_URL'));
define('WP_SITEURL', WP_HOME);
define('WP_HTTP_BLOCK_EXTERNAL', true);
define('AUTOMATIC_UPDATER_DISABLED', true);
define('DISABLE_WP_CRON', true);
if (!defined('ABSPATH')) {
    define('ABSPATH', __DIR__ . '/');
}
require_once ABSPATH . 'wp-settings.php';
