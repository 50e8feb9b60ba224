program early
  call late ! the second page that is asked for
  call leading
end program early
