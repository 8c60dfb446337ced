<?php
// Addresses that are no file belong to WordPress, as a web server's rewriting says.
$path = $_SERVER['DOCUMENT_ROOT'] . parse_url($_SERVER['REQUEST_URI'], PHP_URL_PATH);
if (is_file($path) || (str_ends_with($path, '/') && is_file($path . 'index.php'))) {
    return false;
}
require $_SERVER['DOCUMENT_ROOT'] . '/index.php';
