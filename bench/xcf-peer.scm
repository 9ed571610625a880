; Ten PNG files of a folder become the layers of an image, which is saved as XCF and loaded again; both times,
; in milliseconds, go to a file of the folder. Called by bench-document.
(define (now)
  (let ((t (gettimeofday)))
    (+ (* 1000 (car t)) (/ (cadr t) 1000))))

(define (measure folder)
  (let* ((image (car (gimp-image-new 2000 2000 RGB)))
         (xcf (string-append folder "/page.xcf")))
    (let add ((n 0))
      (if (< n 10)
          (begin
            (gimp-image-insert-layer image
              (car (gimp-file-load-layer RUN-NONINTERACTIVE image
                     (string-append folder "/layer" (number->string n) ".png"))) 0 0)
            (add (+ n 1)))))
    (let* ((start (now))
           (saved (begin (gimp-xcf-save 0 image 0 xcf xcf) (now)))
           (loaded (begin (gimp-file-load RUN-NONINTERACTIVE xcf xcf) (now)))
           (out (open-output-file (string-append folder "/xcf-times"))))
      (display (- saved start) out)
      (display " " out)
      (display (- loaded saved) out)
      (close-output-port out)))
  (gimp-quit 0))
